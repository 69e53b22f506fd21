// Which items are the same one: by root id and store first; what is left over by root id alone, which is a change of
// the store; and what is left over then by cell, which is another root id.
#include "Changes.h"

namespace cli::diff
{
namespace
{

using Left = std::vector<const ItemText*>;

/// Items that requests find, in the order of the file.
Left found(const Side& side)
{
  Left items;
  for (const ItemText& item : side.items())
  {
    if (side.isFound(item))
      items.push_back(&item);
  }
  return items;
}

/// Pairs what `other` knows a partner for, and answers what is left of the new items.
template <typename Partner>
Left pairUp(const Left& items, std::vector<Pair>& pairs, std::unordered_set<const ItemText*>& taken, Partner partner)
{
  Left left;
  for (const ItemText* item : items)
  {
    const ItemText* const other = partner(*item);
    if (other == nullptr || !taken.insert(other).second)
      left.push_back(item);
    else
      pairs.push_back({other, item});
  }
  return left;
}

/// Cells of items that only one map has. Of several in one cell it is the one that reads it.
Readers cellsOf(const Left& items, const Side& side)
{
  Readers cells;
  for (const ItemText* item : items)
  {
    if (!hasCell(*item))
      continue;
    const ItemText*& owner = cells[cellOf(*item)];
    if (owner == nullptr || side.readers().at(cellOf(*item)) == item)
      owner = item;
  }
  return cells;
}

} // namespace

Matching matched(const Side& oldMap, const Side& newMap)
{
  Matching matching;
  std::unordered_set<const ItemText*> taken;
  const auto byRootId = [&](bool otherStore)
  {
    return [&oldMap, otherStore](const ItemText& item)
    { return oldMap.find(item[Column::rootId], item.isLocal() != otherStore); };
  };
  const Left oldItems = found(oldMap);
  Left left = pairUp(found(newMap), matching.pairs, taken, byRootId(false));
  left = pairUp(left, matching.pairs, taken, byRootId(true));
  const auto leftOfOld = [&]
  {
    Left rest;
    for (const ItemText* item : oldItems)
    {
      if (taken.count(item) == 0)
        rest.push_back(item);
    }
    return rest;
  };
  const Readers cells = cellsOf(leftOfOld(), oldMap);
  const Readers newCells = cellsOf(left, newMap);
  const auto byCell = [&](const ItemText& item) -> const ItemText*
  {
    const bool owns = hasCell(item) && newCells.at(cellOf(item)) == &item;
    const auto owner = owns ? cells.find(cellOf(item)) : cells.end();
    return owner == cells.end() ? nullptr : owner->second;
  };
  matching.added = pairUp(left, matching.renamed, taken, byCell);
  matching.removed = leftOfOld();
  matching.pairs.insert(matching.pairs.end(), matching.renamed.begin(), matching.renamed.end());
  return matching;
}

} // namespace cli::diff
