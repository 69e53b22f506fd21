// Each line is an object of JSON; a line that is none of ours is passed over.
#include "HistoryLines.h"

#include "base/JsonText.h"

namespace cli
{
namespace
{

using Json = nlohmann::ordered_json;

// A longer line is nobody's who writes a history, and costs more than it tells.
constexpr std::size_t longestLine = 1024UL * 1024;

std::string written(const Json& line)
{
  return jsonText(line) + "\n";
}

std::string text(const Json& line, const char* name)
{
  const auto found = line.find(name);
  return found != line.end() && found->is_string() ? found->get<std::string>() : std::string();
}

std::uint64_t number(const Json& line, const char* name)
{
  const auto found = line.find(name);
  return found != line.end() && found->is_number_unsigned() ? found->get<std::uint64_t>() : 0;
}

HistoryLine parsedEvent(const Json& line)
{
  HistoryEvent event = {text(line, "time"),    text(line, "run"),     text(line, "item"),   text(line, "origin"),
                        text(line, "outcome"), text(line, "value"),   text(line, "reason"), number(line, "request"),
                        number(line, "start"), number(line, "before")};
  if (event.rootId.empty() || event.outcome.empty())
    return {};
  return event;
}

HistoryLine parsedDropped(const Json& line)
{
  DroppedEvents dropped;
  dropped.until = text(line, "until");
  for (const auto& [item, count] : line["dropped"].items())
  {
    if (count.is_number_unsigned())
      dropped.counts[item] = count.get<std::size_t>();
  }
  return dropped;
}

} // namespace

HistoryLine parsedHistoryLine(std::string_view content)
{
  if (content.size() > longestLine)
    return {};
  Json line;
  try
  {
    line = jsonOf(content);
  }
  catch (const JsonError&)
  {
    return {};
  }
  if (!line.is_object())
    return {};
  if (line.contains("item"))
    return parsedEvent(line);
  if (line.contains("dropped") && line["dropped"].is_object())
    return parsedDropped(line);
  StartMark mark = {number(line, "start"),  text(line, "time"),      text(line, "run"),
                    number(line, "before"), !line.contains("again"), text(line, "digest")};
  if (mark.number == 0 || mark.run.empty())
    return {};
  return mark;
}

std::string lineOf(const HistoryEvent& event)
{
  Json line = {{"time", event.time},     {"run", event.run},         {"item", event.rootId},
               {"origin", event.origin}, {"outcome", event.outcome}, {"value", event.value}};
  if (!event.reason.empty())
    line["reason"] = event.reason;
  if (event.request != 0)
    line["request"] = event.request;
  if (event.start != 0)
    line["start"] = event.start;
  if (event.start != 0 && event.requestsBefore != 0)
    line["before"] = event.requestsBefore;
  return written(line);
}

std::string lineOf(const StartMark& mark)
{
  Json line = {{"start", mark.number},
               {"time", mark.time},
               {"run", mark.run},
               {"before", mark.requestsBefore},
               {"digest", mark.digest}};
  if (!mark.anew)
    line["again"] = true;
  return written(line);
}

std::string lineOf(const DroppedEvents& dropped)
{
  Json counts = Json::object();
  for (const auto& [item, count] : dropped.counts)
    counts[item] = count;
  return written({{"dropped", counts}, {"until", dropped.until}});
}

bool mayTellOf(std::string_view line, const std::string& rootId)
{
  // As `lineOf` writes it; what is no event has no item.
  const std::string item = "\"item\":" + jsonText(Json(rootId));
  return line.find("\"item\":") == std::string_view::npos || line.find(item) != std::string_view::npos;
}

} // namespace cli
