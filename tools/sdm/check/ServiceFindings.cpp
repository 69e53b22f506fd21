// Tries the service in a process of its own and puts what it finds at the lines of the map.
#include "ServiceFindings.h"

#include <algorithm>
#include <fstream>
#include <string>

#include "base/ScratchFolder.h"
#include "base/StartError.h"
#include "base/Text.h"
#include "service/ServiceCheck.h"

namespace cli::check
{
namespace
{

/// The column that a finding of this rule is about.
Column columnOf(const std::string& rule)
{
  if (rule == "unresolved-getter" || rule == "getter-throws")
    return Column::getter;
  if (rule == "unresolved-setter" || rule == "setter-throws")
    return Column::setter;
  if (beginsWith(rule, "default-"))
    return Column::defaultValue;
  if (beginsWith(rule, "alternative-"))
    return Column::alternativeDefault;
  if (beginsWith(rule, "group-") || rule == "no-validator" || rule == "validator-throws")
    return Column::isGroupItem;
  return Column::rootId;
}

/// Of several items with one root id the last, as the manager finds it; null without one.
const MapLine* lineWith(const MapText& map, const std::string& rootId)
{
  const auto found = std::find_if(map.lines().rbegin(), map.lines().rend(),
                                  [&](const MapLine& line) {
                                    return line.kind == MapLine::Kind::item && map.text(line, Column::rootId) == rootId;
                                  });
  return found == map.lines().rend() ? nullptr : &*found;
}

Span placeOf(const MapText& map, const ServiceFinding& found)
{
  const MapLine* line = found.rootId.empty() ? nullptr : lineWith(map, found.rootId);
  if (line == nullptr)
    return {};
  const Span column = line->at(columnOf(found.rule));
  return column.empty() ? line->at(Column::rootId) : column;
}

} // namespace

std::vector<Finding> serviceFindings(const MapText& map, const std::filesystem::path& service,
                                     const std::vector<const Rule*>& rules, Progress& progress)
{
  // A map may come through a pipe.
  const ScratchFolder scratch("check");
  const std::filesystem::path copy = scratch.path() / "map.csv";
  if (!std::ofstream(copy, std::ios::binary)
           .write(map.bytes().data(), static_cast<std::streamsize>(map.bytes().size())))
    throw StartError("the item map " + map.path() + " cannot be copied to " + copy.string() + "; make room there");
  std::vector<Finding> findings;
  for (const ServiceFinding& found : checkService(service, copy, progress))
  {
    const auto rule =
        std::find_if(rules.begin(), rules.end(), [&](const Rule* each) { return found.rule == each->id; });
    if (rule != rules.end())
      findings.push_back({*rule, placeOf(map, found), found.text, {}, {}});
  }
  return findings;
}

} // namespace cli::check
