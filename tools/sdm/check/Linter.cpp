// Each rule looks for itself; mending goes in rounds until nothing more can be mended.
#include "Linter.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <utility>

#include "Rules.h"

namespace cli::check
{
namespace
{

/// Edits that do not get into each other's way, in the order of the file.
class Edits
{
public:
  /// All edits of a finding, or none of them.
  bool add(const std::vector<Edit>& wanted)
  {
    if (!std::all_of(wanted.begin(), wanted.end(), [&](const Edit& edit) { return fits(edit); }))
      return false;
    for (const Edit& edit : wanted)
      all.emplace(edit.place.begin, edit);
    return true;
  }

  std::string applied(const std::string& content) const
  {
    std::string made;
    made.reserve(content.size());
    std::size_t done = 0;
    for (const auto& [begin, edit] : all)
    {
      made.append(content, done, begin - done).append(edit.replacement);
      done = edit.place.end;
    }
    return made.append(content, done);
  }

private:
  bool fits(const Edit& edit) const
  {
    const auto next = all.lower_bound(edit.place.begin);
    const bool freeBehind = next == all.end() || next->first >= edit.place.end;
    const bool freeBefore = next == all.begin() || std::prev(next)->second.place.end <= edit.place.begin;
    return freeBehind && freeBefore;
  }

  std::map<std::uint32_t, Edit> all;
};

void look(const Rule& rule, const MapText& map, const std::vector<ItemText>& items, Report& report)
{
  if (const auto* atMap = std::get_if<LookAtMap>(&rule.look))
    (*atMap)(map, report);
  else if (const auto* atItem = std::get_if<LookAtItem>(&rule.look))
    std::for_each(items.begin(), items.end(), [&](const ItemText& item) { (*atItem)(item, report); });
}

bool readsItems(const Rule& rule)
{
  const auto& files = fileRules();
  return std::none_of(files.begin(), files.end(), [&](const Rule& file) { return &file == &rule; });
}

/// Nobody can tell what a column was meant to be once it stands in another's place, so its line is for the author.
void leaveShifted(const std::vector<ItemText>& items, const MapText& map, std::vector<Finding>& findings)
{
  std::set<std::uint32_t> shifted;
  for (const ItemText& item : items)
  {
    if (hasShiftedColumns(item))
      shifted.insert(map.wholeLine(item.line().place.begin).begin);
  }
  for (Finding& finding : findings)
  {
    if (finding.fix.empty() || !readsItems(*finding.rule) ||
        shifted.count(map.wholeLine(finding.place.begin).begin) == 0)
      continue;
    finding.fix.clear();
    finding.text += "; --fix leaves it, since the columns of this line are shifted";
  }
}

/// One round: what the findings of this content allow.
bool mendOnce(MendedMap& made, const std::string& path, const std::vector<const Rule*>& rules)
{
  const MapText map(path, made.content);
  const Positions positions(map);
  Edits edits;
  const std::size_t before = made.mended.size();
  for (const Finding& finding : findingsOf(map, rules))
  {
    if (!finding.fix.empty() && edits.add(finding.fix))
      made.mended.push_back({finding.rule, positions.of(finding.place.begin), finding.text});
  }
  made.content = edits.applied(map.bytes());
  return made.mended.size() > before;
}

} // namespace

void sortByPlace(std::vector<Finding>& findings)
{
  std::stable_sort(findings.begin(), findings.end(),
                   [](const Finding& lhs, const Finding& rhs) { return lhs.place.begin < rhs.place.begin; });
}

std::vector<Finding> findingsOf(const MapText& map, const std::vector<const Rule*>& rules,
                                const std::function<void(double)>& progress)
{
  std::vector<Finding> findings;
  const bool unreadable = isUtf16(map);
  const std::vector<ItemText> items = itemsOf(map);
  double done = 0;
  for (const Rule* rule : rules)
  {
    Report report(*rule, findings);
    if (!unreadable || !readsItems(*rule))
      look(*rule, map, items, report);
    if (progress)
      progress(++done / static_cast<double>(rules.size()));
  }
  leaveShifted(items, map, findings);
  sortByPlace(findings);
  return findings;
}

MendedMap mend(const MapText& map, const std::vector<const Rule*>& rules)
{
  // What one change uncovers the next round takes care of; each takes something away, so that it ends soon.
  constexpr int mostRounds = 10;
  MendedMap made{map.bytes(), {}};
  for (int round = 0; round < mostRounds && mendOnce(made, map.path(), rules); ++round)
  {
  }
  return made;
}

} // namespace cli::check
