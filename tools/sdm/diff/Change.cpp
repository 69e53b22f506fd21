// Finds the changes of two maps and puts them in the order of the lines.
#include "Change.h"

#include <algorithm>

#include "Changes.h"
#include "findings/Report.h"

namespace cli::diff
{
namespace
{

/// Where it is told: by its line of the new map, or of the old one where it has no other.
std::uint32_t order(const Change& change)
{
  return change.newPlace ? change.newPlace->begin : change.oldPlace->begin;
}

} // namespace

std::vector<Change> changesOf(const MapText& oldMap, const MapText& newMap)
{
  const Side before(oldMap);
  const Side after(newMap);
  Changes changes(before, after);
  const Matching matching = matched(before, after);
  lookForItems(matching, changes);
  for (const Pair& pair : matching.pairs)
    lookForColumns(pair, changes);
  lookForCells(matching, changes);
  lookForSchemas(changes);
  lookForDuplicates(changes);
  std::vector<Change> all = changes.take();
  std::stable_sort(all.begin(), all.end(),
                   [](const Change& lhs, const Change& rhs) {
                     return std::make_tuple(order(lhs), lhs.rule, lhs.subject) <
                            std::make_tuple(order(rhs), rhs.rule, rhs.subject);
                   });
  return all;
}

std::string fingerprint(const Change& change)
{
  return findings::fingerprintOf({change.rule->id, change.subject, change.before, change.after});
}

} // namespace cli::diff
