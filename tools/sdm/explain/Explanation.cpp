#include "explain/Explanation.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "Masking.h"
#include "Shown.h"

namespace cli
{
namespace
{

using Json = nlohmann::ordered_json;

std::string request(const HistoryEvent& event)
{
  return event.request == 0 ? "" : ", request " + std::to_string(event.request);
}

std::string valueOf(const HistoryEvent& event)
{
  return event.value == Masking::mask ? event.value : shownValue(event.value);
}

std::string fate(const HistoryEvent& event, const Style& style)
{
  std::string text = shown(event.outcome);
  if (!event.isLive())
    text = style.bad(text);
  text += request(event);
  return event.reason.empty() ? text : text + ": " + shown(event.reason);
}

Json jsonOf(const HistoryEvent& event)
{
  Json json = {{"time", event.time},
               {"run", event.run},
               {"origin", event.origin},
               {"outcome", event.outcome},
               {"value", event.value}};
  json["reason"] = event.reason.empty() ? Json() : Json(event.reason);
  json["request"] = event.request == 0 ? Json() : Json(event.request);
  return json;
}

} // namespace

std::optional<HistoryEvent> lastLiveEvent(const std::vector<HistoryEvent>& events)
{
  for (auto event = events.rbegin(); event != events.rend() && event->run == events.back().run; ++event)
  {
    if (event->isLive())
      return *event;
  }
  return std::nullopt;
}

void printExplanation(std::ostream& out, const Style& style, const std::string& rootId,
                      const std::vector<HistoryEvent>& events, const std::optional<HistoryEvent>& live)
{
  if (live)
    out << style.strong(shown(rootId)) << " = " << valueOf(*live) << ", from: " << live->origin << ", " << live->time
        << request(*live) << "\n";
  else
    out << style.strong(shown(rootId)) << ": no setter took a value of it\n";
  std::size_t value = 0;
  std::size_t origin = 0;
  for (const HistoryEvent& event : events)
  {
    value = std::max(value, std::min<std::size_t>(width(valueOf(event)), 40));
    origin = std::max(origin, width(shown(event.origin)));
  }
  std::string run;
  for (const HistoryEvent& event : events)
  {
    if (event.run != run)
      out << style.faint("  run of " + shown(event.run)) << "\n";
    run = event.run;
    out << "  " << shown(event.time) << "  " << padded(shown(event.origin), origin) << "  "
        << padded(clipped(valueOf(event), 40), value) << "  " << fate(event, style) << "\n";
  }
}

void printExplanationAsJson(std::ostream& out, const std::string& rootId, const std::vector<HistoryEvent>& events,
                            const std::optional<HistoryEvent>& live)
{
  Json document = {{"item", rootId}, {"value", live ? jsonOf(*live) : Json()}};
  document["events"] = Json::array();
  for (const HistoryEvent& event : events)
    document["events"].push_back(jsonOf(event));
  out << document.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
}

} // namespace cli
