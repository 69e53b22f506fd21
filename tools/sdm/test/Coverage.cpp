// Compares what the transcripts reached with what the map and the service have.
#include "Coverage.h"

#include <algorithm>

#include "base/StartError.h"
#include "base/Text.h"
#include "map/ItemTable.h"

namespace cli::test
{
namespace
{

using Json = nlohmann::ordered_json;

std::string textOf(const Json& content, const char* name)
{
  const auto found = content.find(name);
  return found != content.end() && found->is_string() ? found->get<std::string>() : "";
}

template <typename Places>
bool hasName(const Places& places, const std::string& name)
{
  return std::any_of(places.begin(), places.end(), [&](const auto& place) { return place.first == name; });
}

/// Those of `all` for which `ran` is false.
template <typename All, typename Ran>
CoverageOf coverageOf(const char* kind, const All& all, const Ran& ran)
{
  CoverageOf made = {kind, all.size(), {}};
  std::copy_if(all.begin(), all.end(), std::back_inserter(made.missing), [&](const auto& each) { return !ran(each); });
  return made;
}

} // namespace

void Coverage::note(const transcript::Transcript& transcript, const std::filesystem::path& map)
{
  try
  {
    const ItemTable table(map);
    for (const MapItem& item : table.items())
    {
      items.insert({item.rootId, {item.setter, item.indexValue}, {item.getter, item.indexValue}});
      if (!item.group.empty())
        groups.insert(item.group);
    }
  }
  catch (const StartError&)
  {
    return;
  }
  bool starts = false;
  for (const transcript::Event& event : transcript.events)
  {
    const bool ofStart = beginsWith(textOf(event.content, "op"), "initialise");
    const bool ofEnd = beginsWith(textOf(event.content, "result"), "initialise");
    starts = (starts || ofStart) && !ofEnd;
    if (!starts)
      noteEvent(event);
  }
}

void Coverage::noteEvent(const transcript::Event& event)
{
  const Json& content = event.content;
  const std::string kind = transcript::kindOf(event);
  if (kind == "registered")
  {
    for (const Json& name : content.front().value("setters", Json::array()))
      setters.insert(name.get<std::string>());
    for (const Json& name : content.front().value("getters", Json::array()))
      getters.insert(name.get<std::string>());
  }
  else if (kind == "setter")
    settersRun.insert({textOf(content, "setter"), textOf(content, "row")});
  else if (kind == "getter")
    gettersRun.insert({textOf(content, "getter"), textOf(content, "row")});
  else if (kind == "validator" && textOf(content, "validator") == "validateGroup")
    groupsRun.insert(textOf(content, "group"));
  else if (kind == "op")
    noteItems(content);
}

void Coverage::noteItems(const Json& content)
{
  itemsRun.insert(textOf(content, "item"));
  for (const Json& rootId : content.value("items", Json::array()))
    itemsRun.insert(rootId.get<std::string>());
  const Json values = content.value("values", Json::object());
  for (const auto& [rootId, value] : values.items())
    itemsRun.insert(rootId);
}

CoverageReport Coverage::report() const
{
  std::set<std::string> rootIds;
  std::set<std::string> ran = itemsRun;
  for (const Item& item : items)
  {
    rootIds.insert(item.rootId);
    if (settersRun.count(item.setter) != 0 || gettersRun.count(item.getter) != 0)
      ran.insert(item.rootId);
  }
  return {coverageOf("setters", setters, [&](const std::string& name) { return hasName(settersRun, name); }),
          coverageOf("getters", getters, [&](const std::string& name) { return hasName(gettersRun, name); }),
          coverageOf("groups", groups, [&](const std::string& name) { return groupsRun.count(name) != 0; }),
          coverageOf("items", rootIds, [&](const std::string& name) { return ran.count(name) != 0; })};
}

} // namespace cli::test
