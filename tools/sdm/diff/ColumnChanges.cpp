// What differs in the columns of an item that both maps have.
#include "Changes.h"

#include <array>

namespace cli::diff
{
namespace
{

bool differ(const Pair& pair, Column column)
{
  return (*pair.before)[column] != (*pair.after)[column];
}

/// The rules of a text that may come, go or change.
struct TextRules
{
  Column column;
  const char* what;
  const char* came;
  const char* went;
  const char* changed;
};

void lookForText(const Pair& pair, const TextRules& rules, Changes& changes)
{
  if (!differ(pair, rules.column))
    return;
  const bool had = pair.before->has(rules.column);
  const bool has = pair.after->has(rules.column);
  changes.add(had && has ? rules.changed : has ? rules.came : rules.went, pair, rules.column, rules.what);
}

std::string onOff(bool on)
{
  return on ? "on" : "off";
}

void lookForSwitch(const Pair& pair, Column column, bool was, bool is, const std::array<const char*, 2>& onAndOff,
                   const char* what, Changes& changes)
{
  if (was == is)
    return;
  const std::string_view rootId = (*pair.after)[Column::rootId];
  Change& change =
      changes.add(is ? onAndOff[0] : onAndOff[1], rootId, pair, column,
                  std::string(what) + " of " + quoted(rootId) + " was " + onOff(was) + " and is " + onOff(is));
  change.before = onOff(was);
  change.after = onOff(is);
}

/// Whether the whole schema went over from the one index column to the other, which is told once.
bool schemaFollows(const Pair& pair, const Changes& changes)
{
  const auto was = changes.before().schemas().find((*pair.before)[Column::dasSchema]);
  const auto is = changes.after().schemas().find((*pair.after)[Column::dasSchema]);
  return was != changes.before().schemas().end() && is != changes.after().schemas().end() && was->first == is->first &&
         was->second.indexName == (*pair.before)[Column::dasIndexName] &&
         is->second.indexName == (*pair.after)[Column::dasIndexName];
}

void lookForMove(const Pair& pair, Column column, const char* rule, const char* what, Changes& changes)
{
  if (!differ(pair, column))
    return;
  Change& change = changes.add(rule, pair, column, what);
  change.text += ": it moved from " + placeText(*pair.before) + " to " + placeText(*pair.after);
}

void lookForMoves(const Pair& pair, Changes& changes)
{
  lookForMove(pair, Column::dasSchema, "cell-moved-schema", "the schema", changes);
  lookForMove(pair, Column::dasItem, "cell-moved-column", "the column", changes);
  lookForMove(pair, Column::dasIndexValue, "cell-moved-index-value", "the index value", changes);
  if (!schemaFollows(pair, changes))
    lookForMove(pair, Column::dasIndexName, "cell-moved-index-name", "the index column", changes);
}

/// What a line of the local store says about a database is read, and never used.
void lookForUnused(const Pair& pair, Changes& changes)
{
  if (differ(pair, Column::dasIndexValue))
    changes.add("local-index-changed", pair, Column::dasIndexValue, "the index value");
  for (const Column column : {Column::dasItem, Column::dasIndexName, Column::isGroupItem})
  {
    if (differ(pair, column))
      changes.add("unused-column-changed", pair, column, std::string("the ") + columnName(column));
  }
  if (pair.before->isEncrypted() != pair.after->isEncrypted())
    changes.add("unused-column-changed", pair, Column::dasEncrypted,
                std::string("the ") + columnName(Column::dasEncrypted));
}

void lookForEffective(const Pair& pair, Changes& changes)
{
  lookForSwitch(pair, Column::dasEncrypted, pair.before->isEncrypted(), pair.after->isEncrypted(),
                {"encryption-switched-on", "encryption-switched-off"}, "the encryption", changes);
  lookForText(pair, {Column::isGroupItem, "the group", "group-joined", "group-left", "group-changed"}, changes);
}

} // namespace

void lookForColumns(const Pair& pair, Changes& changes)
{
  if (pair.before->isLocal() && pair.after->isLocal())
    lookForUnused(pair, changes);
  else
    lookForEffective(pair, changes);
  if (!pair.before->isLocal() && !pair.after->isLocal())
    lookForMoves(pair, changes);
  if (differ(pair, Column::defaultValue))
    changes.add("default-changed", pair, Column::defaultValue, "the default");
  lookForText(pair,
              {Column::alternativeDefault, "the alternative default", "alternative-added", "alternative-removed",
               "alternative-changed"},
              changes);
  const Side& before = changes.before();
  const Side& after = changes.after();
  lookForSwitch(pair, Column::userData, before.isUserData((*pair.before)[Column::rootId]),
                after.isUserData((*pair.after)[Column::rootId]), {"user-data-on", "user-data-off"},
                "the user-data mark", changes);
  lookForText(pair, {Column::setter, "the setter", "setter-added", "setter-removed", "setter-renamed"}, changes);
  lookForText(pair, {Column::getter, "the getter", "getter-added", "getter-removed", "getter-renamed"}, changes);
}

} // namespace cli::diff
