// Items that came, went, or got another name or store.
#include "Changes.h"

namespace cli::diff
{
namespace
{

std::string rootIdOf(const ItemText& item)
{
  return quoted(item[Column::rootId]);
}

/// A value of one map alone, for a sentence.
std::string withDefault(const Changes& changes, const Pair& pair)
{
  const ItemText& item = pair.before != nullptr ? *pair.before : *pair.after;
  if (!item.has(Column::defaultValue))
    return "";
  return ", with the default " + (pair.before != nullptr ? changes.valueBefore(pair, Column::defaultValue)
                                                         : changes.valueAfter(pair, Column::defaultValue));
}

void lookForStores(const Pair& pair, Changes& changes)
{
  if (pair.before->isLocal() == pair.after->isLocal())
    return;
  const char* const rule = pair.after->isLocal() ? "moved-to-local-store" : "moved-to-database";
  Change& change = changes.add(rule, (*pair.after)[Column::rootId], pair, Column::dasSchema,
                               rootIdOf(*pair.after) + " was in " + placeText(*pair.before) + " and is in " +
                                   placeText(*pair.after));
  change.before = placeText(*pair.before);
  change.after = placeText(*pair.after);
}

} // namespace

void lookForItems(const Matching& matching, Changes& changes)
{
  for (const ItemText* item : matching.added)
  {
    const Pair pair = {nullptr, item};
    Change& change = changes.add("item-added", (*item)[Column::rootId], pair, Column::rootId,
                                 rootIdOf(*item) + " is new, in " + placeText(*item) + withDefault(changes, pair));
    change.after = placeText(*item);
  }
  for (const ItemText* item : matching.removed)
  {
    const Pair pair = {item, nullptr};
    Change& change =
        changes.add("item-removed", (*item)[Column::rootId], pair, Column::rootId,
                    rootIdOf(*item) + " is gone, which was in " + placeText(*item) + withDefault(changes, pair));
    change.before = placeText(*item);
  }
  for (const Pair& pair : matching.renamed)
  {
    Change& change = changes.add("root-id-renamed", (*pair.after)[Column::rootId], pair, Column::rootId,
                                 "the item in " + placeText(*pair.after) + " was " + rootIdOf(*pair.before) +
                                     " and is " + rootIdOf(*pair.after));
    change.before = (*pair.before)[Column::rootId];
    change.after = (*pair.after)[Column::rootId];
  }
  for (const Pair& pair : matching.pairs)
    lookForStores(pair, changes);
}

} // namespace cli::diff
