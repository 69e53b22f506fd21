// Items that get into each other's way: of several with the same key the last one counts, without a word.
#include "Rules.h"

#include "base/Text.h"

#include <map>
#include <tuple>
#include <unordered_map>

namespace cli::check
{
namespace
{

void lookForMissingRootIds(const ItemText& item, Report& report)
{
  if (item.place(Column::rootId).empty())
    report.add(item.place(Column::rootId), "the item has no root id, so that nobody can ask for it");
}

/// The last item of each root id so far, in the database or in the local store.
using Seen = std::unordered_map<std::string_view, const MapLine*>;

void lookForRootIds(const MapText& map, Report& report)
{
  Seen database;
  Seen local;
  for (const ItemText& item : itemsOf(map))
  {
    if (!item.has(Column::rootId))
      continue;
    const MapLine*& earlier = (item.isLocal() ? local : database)[item[Column::rootId]];
    if (earlier != nullptr)
    {
      report
          .add(item.place(Column::rootId), "the root id " + quoted(item[Column::rootId]) + " stands in " +
                                               lineOf(*earlier) + " already; that item is out of reach now")
          .related.push_back({earlier->at(Column::rootId), "the item that is out of reach"});
    }
    earlier = &item.line();
  }
}

void lookForBothStores(const MapText& map, Report& report)
{
  Seen database;
  for (const ItemText& item : itemsOf(map))
  {
    if (!item.isLocal())
      database.emplace(item[Column::rootId], &item.line());
  }
  for (const ItemText& item : itemsOf(map))
  {
    const auto other = database.find(item[Column::rootId]);
    if (!item.isLocal() || !item.has(Column::rootId) || other == database.end())
      continue;
    report
        .add(item.place(Column::rootId), "the root id " + quoted(item[Column::rootId]) +
                                             " belongs to an item of the database as well, in " +
                                             lineOf(*other->second))
        .related.push_back({other->second->at(Column::rootId), "the item of the database"});
  }
}

void lookForCells(const MapText& map, Report& report)
{
  std::map<std::tuple<std::string_view, std::string_view, std::string_view>, const MapLine*> seen;
  for (const ItemText& item : itemsOf(map))
  {
    if (item.isLocal() || !item.has(Column::dasItem))
      continue;
    const MapLine*& earlier = seen[{item[Column::dasSchema], item[Column::dasItem], item[Column::dasIndexValue]}];
    if (earlier != nullptr)
    {
      report
          .add(item.place(Column::dasItem), "the cell of this item is that of " + lineOf(*earlier) +
                                                " already; only the last item with a setter is imported")
          .related.push_back({earlier->at(Column::dasItem), "the other item of the cell"});
    }
    earlier = &item.line();
  }
}

/// What the items of one schema call its index column.
struct IndexNames
{
  std::map<std::string_view, std::size_t> uses;
  /// The item whose name the import goes by.
  const MapLine* deciding = nullptr;

  /// The name of most; of several, the one of the earliest item.
  std::string_view usual;
};

std::map<std::string_view, IndexNames> indexNames(const MapText& map)
{
  std::map<std::string_view, IndexNames> schemas;
  for (const ItemText& item : itemsOf(map))
  {
    if (item.isLocal())
      continue;
    IndexNames& names = schemas[item[Column::dasSchema]];
    const std::string_view name = item[Column::dasIndexName];
    if (names.uses.empty())
      names.usual = name;
    if (++names.uses[name] > names.uses[names.usual])
      names.usual = name;
    if (item.has(Column::setter))
      names.deciding = &item.line();
  }
  return schemas;
}

void lookForIndexNames(const MapText& map, Report& report)
{
  const auto schemas = indexNames(map);
  for (const ItemText& item : itemsOf(map))
  {
    const auto schema = schemas.find(item[Column::dasSchema]);
    if (schema == schemas.end() || schema->second.usual == item[Column::dasIndexName])
      continue;
    const IndexNames& names = schema->second;
    Finding& finding =
        report.add(item.place(Column::dasIndexName),
                   "the index column is " + quoted(item[Column::dasIndexName]) + " here, but " + quoted(names.usual) +
                       " for most items of schema " + quoted(item[Column::dasSchema]));
    if (names.deciding != nullptr)
      finding.related.push_back(
          {names.deciding->at(Column::dasIndexName), "the import takes the name of the last item with a setter: " +
                                                         quoted(map.text(*names.deciding, Column::dasIndexName))});
  }
}

void lookForIndexValues(const MapText& map, Report& report)
{
  const auto schemas = indexNames(map);
  for (const ItemText& item : itemsOf(map))
  {
    const auto schema = schemas.find(item[Column::dasSchema]);
    // When items of the schema disagree, that is what has to be said.
    if (schema != schemas.end() && schema->second.usual.empty() && !item.has(Column::dasIndexName) &&
        item.has(Column::dasIndexValue))
      report.add(item.place(Column::dasIndexValue),
                 "an index value without an index column: the item is never imported, and all rows write one cell");
  }
}

void lookForIndexWithoutValue(const ItemText& item, Report& report)
{
  if (!item.isLocal() && item.has(Column::dasIndexName) && !item.has(Column::dasIndexValue))
    report.add(item.place(Column::dasIndexValue),
               "an index column without an index value: requests ask for a row whose index is empty");
}

void lookForSuffixes(const ItemText& item, Report& report)
{
  const std::string_view rootId = item[Column::rootId];
  const std::size_t last = rootId.find_last_not_of("0123456789");
  if (!item.isLocal() || !item.has(Column::setter) || last == std::string_view::npos || rootId[last] != '-')
    return;
  const std::string_view suffix = rootId.substr(last + 1);
  if (suffix != item[Column::dasIndexValue])
    report.add(item.place(Column::dasIndexValue), "the setter gets index " + quoted(suffix) +
                                                      " from the root id at start-up, but " +
                                                      quoted(item[Column::dasIndexValue]) + " later on");
}

void lookForCase(const MapText& map, Report& report)
{
  // Names by what they name (columns by their schema), in lower case: the first spelling.
  std::unordered_map<std::string, const MapLine*> seen;
  for (const ItemText& item : itemsOf(map))
  {
    for (const Column column :
         {Column::rootId, Column::dasSchema, Column::dasItem, Column::setter, Column::getter, Column::isGroupItem})
    {
      std::string key(1, static_cast<char>(column));
      if (column == Column::dasItem)
        key.append(item[Column::dasSchema]).append(1, '\0');
      const MapLine*& first = seen[key + lowered(item[column])];
      if (first == nullptr)
        first = &item.line();
      if (map.text(*first, column) == item[column])
        continue;
      report
          .add(item.place(column), std::string("the ") + columnName(column) + " " + quoted(item[column]) +
                                       " differs from " + quoted(map.text(*first, column)) + " in " + lineOf(*first) +
                                       " by case alone")
          .related.push_back({first->at(column), "the other spelling"});
    }
  }
}

} // namespace

const std::vector<Rule>& identityRules()
{
  static const std::vector<Rule> rules = {
      {"no-root-id", Severity::error, false, "An item without a root id is out of everybody's reach.",
       "The library loads the item and calls its setter with the default, but enters it into no index by root id: it "
       "can be neither set nor read nor observed.",
       lookForMissingRootIds},
      {"duplicate-root-id", Severity::error, false, "Two items share a root id; only the last is found.",
       "The library loads both and calls both setters with their defaults, but set and get requests, observations and "
       "reloads find the last one alone. The other keeps its default, or what the database holds, for ever.",
       lookForRootIds},
      {"root-id-in-both-stores", Severity::warning, false,
       "A root id names an item of the database and one of the local store.",
       "Set and get requests reach the item with a schema, change notifications the one without: two settings answer "
       "to one name. The service also observes the value that it publishes itself.",
       lookForBothStores},
      {"duplicate-cell", Severity::error, false, "Two items share schema, column and index value.",
       "Both write the same cell of the database. What is read from it reaches the last item with a setter alone: the "
       "other one never learns of stored values, and starts with its default again after each restart.",
       lookForCells},
      {"index-name-disagrees", Severity::error, false, "Items of one schema name different index columns.",
       "A schema has one index column. When replies are read, the name that the last item with a setter gives counts "
       "for the whole schema: with the wrong one no row is told from the others, and the items of all rows miss their "
       "values. An item without index column in a schema of rows is the same mistake.",
       lookForIndexNames},
      {"index-value-without-name", Severity::error, false,
       "An item of the database has an index value, but no index column.",
       "Requests name a row only when there is an index column: all items of that column write the same cell. Replies "
       "are looked up with an empty index value, so the item's stored value never reaches its setter. Items without "
       "schema may have an index value alone: it is handed to their callbacks.",
       lookForIndexValues},
      {"index-name-without-value", Severity::warning, false,
       "An item of the database has an index column, but no index value.",
       "Requests ask for the row whose index is empty, which hardly any schema has.", lookForIndexWithoutValue},
      {"suffix-disagrees", Severity::error, false, "The number in a local item's root id is not its index value.",
       "For items without schema whose root id ends in a hyphen and a number, the import at start-up hands that number "
       "to the setter as the index; change notifications hand it column 5. When they differ, the service stores values "
       "under one index at start-up and under another one later.",
       lookForSuffixes},
      {"differs-only-in-case", Severity::warning, false, "Two names differ by case alone.",
       "All names are compared letter by letter: root ids, schemas, columns, groups, setters and getters that differ "
       "by case are different ones. A setter of the wrong case is not found, without a word in the log.",
       lookForCase},
  };
  return rules;
}

} // namespace cli::check
