// The newest event that took effect tells where the value came from; the others follow in order.
#include "Explanation.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/JsonText.h"
#include "base/Shown.h"
#include "map/Masking.h"

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
  if (event.sameStartsBefore != 0)
    json["sameStartsBefore"] = event.sameStartsBefore;
  return json;
}

} // namespace

std::optional<HistoryEvent> lastLiveEvent(const ItemHistory& history)
{
  for (auto event = history.events.rbegin(); event != history.events.rend(); ++event)
  {
    if (event->isLive() && event->run == history.run)
      return *event;
  }
  return std::nullopt;
}

std::string droppedText(const ItemHistory& history)
{
  return std::to_string(history.dropped) +
         (history.dropped == 1 ? " older event was dropped, of " : " older events were dropped, the last of ") +
         shown(history.droppedUntil);
}

void printExplanation(std::ostream& out, const Style& style, const std::string& rootId, const ItemHistory& history,
                      const std::optional<HistoryEvent>& live)
{
  if (live)
    out << style.strong(shown(rootId)) << " = " << valueOf(*live) << ", from: " << shown(live->origin) << ", "
        << shown(live->time) << request(*live) << "\n";
  else
    out << style.strong(shown(rootId)) << ": no setter took a value of it\n";
  std::size_t value = 0;
  std::size_t origin = 0;
  for (const HistoryEvent& event : history.events)
  {
    value = std::max(value, std::min<std::size_t>(width(valueOf(event)), 40));
    origin = std::max(origin, width(shown(event.origin)));
  }
  if (history.dropped != 0)
    out << style.faint("  " + droppedText(history)) << "\n";
  std::string run;
  for (const HistoryEvent& event : history.events)
  {
    if (event.sameStartsBefore != 0)
      out << style.faint("  the same at " + std::to_string(event.sameStartsBefore) +
                         (event.sameStartsBefore == 1 ? " start" : " starts") + " in between")
          << "\n";
    if (event.run != run)
      out << style.faint("  run of " + shown(event.run)) << "\n";
    run = event.run;
    out << "  " << shown(event.time) << "  " << padded(shown(event.origin), origin) << "  "
        << padded(clipped(valueOf(event), 40), value) << "  " << fate(event, style) << "\n";
  }
}

void printExplanationAsJson(std::ostream& out, const std::string& rootId, const ItemHistory& history,
                            const std::optional<HistoryEvent>& live)
{
  Json document = {{"item", rootId}, {"value", live ? jsonOf(*live) : Json()}};
  if (history.dropped != 0)
    document["dropped"] = {{"events", history.dropped}, {"until", history.droppedUntil}};
  document["events"] = Json::array();
  for (const HistoryEvent& event : history.events)
    document["events"].push_back(jsonOf(event));
  out << shownJson(jsonText(document, 2)) << "\n";
}

} // namespace cli
