// Cells that another item reads, schemas that a start asks for or does not, and their index columns.
#include "Changes.h"

namespace cli::diff
{
namespace
{

bool isStillIn(const Side& side, const ItemText& item)
{
  const ItemText* const other = side.find(item[Column::rootId], false);
  return other != nullptr && cellOf(*other) == cellOf(item);
}

/// An item without a setter reads nothing at a start: beside one that stays in its cell it takes and loses nothing.
bool isTaken(const ItemText& was, const ItemText& is, const Changes& changes)
{
  return (was.has(Column::setter) && is.has(Column::setter)) || !isStillIn(changes.after(), was) ||
         !isStillIn(changes.before(), is);
}

void lookForCell(const ItemText& was, const ItemText& is, Changes& changes)
{
  const auto name = [](const ItemText& item) { return quoted(item[Column::rootId]); };
  Change& change =
      changes.add("cell-reader-changed", placeText(is), {&was, &is}, Column::dasItem,
                  "the cell " + placeText(is) + " was read by " + name(was) + " and is read by " + name(is));
  change.before = was[Column::rootId];
  change.after = is[Column::rootId];
}

void lookForSchema(std::string_view schema, const SchemaUse* was, const SchemaUse* is, Changes& changes)
{
  const Pair pair = {was == nullptr ? nullptr : was->decides, is == nullptr ? nullptr : is->decides};
  const std::string name = "the schema " + quoted(schema);
  if (was == nullptr)
    changes.add("schema-newly-asked", schema, pair, Column::dasSchema, name + " is asked for at a start now");
  else if (is == nullptr)
    changes.add("schema-no-longer-asked", schema, pair, Column::dasSchema,
                name + " is not asked for at a start any more");
  else if (was->indexName != is->indexName)
  {
    Change& change = changes.add("schema-index-changed", schema, pair, Column::dasIndexName,
                                 "the index column of " + name + " was " + quoted(was->indexName) + " and is " +
                                     quoted(is->indexName));
    change.before = was->indexName;
    change.after = is->indexName;
  }
}

} // namespace

void lookForCells(const Matching& matching, Changes& changes)
{
  std::unordered_map<const ItemText*, const ItemText*> renamed;
  for (const Pair& pair : matching.renamed)
    renamed.emplace(pair.after, pair.before);
  for (const auto& [cell, is] : changes.after().readers())
  {
    const auto was = changes.before().readers().find(cell);
    if (was == changes.before().readers().end() || (*was->second)[Column::rootId] == (*is)[Column::rootId])
      continue;
    const auto other = renamed.find(is);
    const bool onlyRenamed = other != renamed.end() && other->second == was->second;
    if (!onlyRenamed && isTaken(*was->second, *is, changes))
      lookForCell(*was->second, *is, changes);
  }
}

void lookForSchemas(Changes& changes)
{
  const auto& before = changes.before().schemas();
  const auto& after = changes.after().schemas();
  for (const auto& [schema, was] : before)
  {
    const auto is = after.find(schema);
    lookForSchema(schema, &was, is == after.end() ? nullptr : &is->second, changes);
  }
  for (const auto& [schema, is] : after)
  {
    if (before.count(schema) == 0)
      lookForSchema(schema, nullptr, &is, changes);
  }
}

} // namespace cli::diff
