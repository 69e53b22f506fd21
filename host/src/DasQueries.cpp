#include "DasQueries.h"

#include <unordered_map>

#include "DasReply.h"
#include "Refusal.h"

namespace host
{
namespace
{
const DasColumn& requireColumn(const DasTable& table, const std::string& name)
{
  const DasColumn* column = table.find(name);
  if (column == nullptr)
    throw Refusal("schema '" + table.schema + "' has no column '" + name + "'");
  return *column;
}

void requireIndexColumn(const DasTable& table, const std::string& name)
{
  if (!table.indexed)
    throw Refusal("schema '" + table.schema + "' has no index column, so an 'Entry' does not belong there");
  const std::string& index = table.columns.front().name;
  if (name != index)
    throw Refusal("an 'Entry' of schema '" + table.schema + "' begins with its index column '" + index + "', not '" +
                  name + "'");
}

/// The columns that a reply shows, the index column first.
std::vector<const DasColumn*> shownColumns(const DasTable& table, const DasRequest& request)
{
  std::vector<const DasColumn*> shown;
  if (!request.resultColumn)
  {
    for (const DasColumn& column : table.columns)
      shown.push_back(&column);
    return shown;
  }
  // Not named, unlike in an update: readers that look for the column's name in a reply have to find nothing.
  const DasColumn* wanted = table.find(*request.resultColumn);
  if (wanted == nullptr)
    throw Refusal("schema '" + table.schema + "' has no such column");
  if (table.indexed && wanted != &table.columns.front())
    shown.push_back(&table.columns.front());
  shown.push_back(wanted);
  return shown;
}

std::string selectStatement(const DasTable& table, const std::vector<const DasColumn*>& shown,
                            const DasRequest& request)
{
  std::string columns;
  for (const DasColumn* column : shown)
    columns += (columns.empty() ? "" : ", ") + table.sqlName(*column);
  std::string sql = "SELECT " + columns + " FROM " + table.sqlName();
  const char* joint = " WHERE ";
  if (request.resultColumn)
  {
    sql += joint + table.sqlName(*shown.back()) + " IS NOT NULL";
    joint = " AND ";
  }
  if (request.row)
    sql += joint + table.sqlName(table.columns.front()) + " = :index";
  return sql + " ORDER BY " + table.sqlName() + "." + quoted(rowOrderColumn);
}

/// A row with its written cells; an indexed one shows its index column even when it has no other.
void writeRow(DasReadReply& reply, const DasTable& table, const std::vector<const DasColumn*>& shown,
              const Database::Row& row)
{
  if (table.indexed)
    reply.beginEntry();
  for (std::size_t i = 0; i < shown.size(); ++i)
    if (row[i])
      reply.column(shown[i]->name, shown[i]->isElementName, *row[i]);
  if (table.indexed)
    reply.endEntry();
}

/// The cells of one row as they stand at the end of the request: of a column written twice the later value.
struct RowChange
{
  std::vector<const DasColumn*> columns;
  Database::Values values;
  std::unordered_map<const DasColumn*, std::size_t> places;

  void set(const DasColumn& column, const std::string& value)
  {
    const auto [place, isNew] = places.emplace(&column, columns.size());
    if (!isNew)
    {
      values[place->second] = value;
      return;
    }
    columns.push_back(&column);
    values.push_back(value);
  }
};

/// Inserts the row that `key` names, or updates it when it is there.
void writeChange(Database& database, const DasTable& table, const std::string& key, const std::string& keyValue,
                 const RowChange& change)
{
  std::string names = quoted(key);
  std::string parameters = ":k";
  std::string assignments;
  Database::Values values = {keyValue};
  for (std::size_t i = 0; i < change.columns.size(); ++i)
  {
    const std::string name = quoted(change.columns[i]->identifier);
    names += ", " + name;
    parameters += ", :v" + std::to_string(i);
    assignments += assignments.empty() ? "" : ", ";
    assignments.append(name).append(" = excluded.").append(name);
    values.push_back(change.values[i]);
  }
  database.execute("INSERT INTO " + table.sqlName() + " (" + names + ") VALUES (" + parameters + ") ON CONFLICT (" +
                       quoted(key) + ") DO UPDATE SET " + assignments,
                   values);
}

void updateEntry(Database& database, const DasTable& table, const std::vector<DasCell>& cells)
{
  const DasCell& index = cells.front();
  requireIndexColumn(table, index.column);
  RowChange change;
  for (std::size_t i = 1; i < cells.size(); ++i)
    change.set(requireColumn(table, cells[i].column), cells[i].value);
  writeChange(database, table, table.columns.front().identifier, index.value, change);
}

void updateOnlyRow(Database& database, const DasTable& table, const std::vector<DasCell>& cells)
{
  if (table.indexed)
    throw Refusal("schema '" + table.schema + "' is indexed, so column '" + cells.front().column +
                  "' belongs into an 'Entry' after '" + table.columns.front().name + "'");
  RowChange change;
  for (const DasCell& cell : cells)
    change.set(requireColumn(table, cell.column), cell.value);
  writeChange(database, table, rowOrderColumn, "1", change);
}
} // namespace

std::string readTable(Database& database, const DasTable& table, const DasRequest& request)
{
  Database::Values values;
  if (request.row)
  {
    requireIndexColumn(table, request.row->column);
    values.push_back(request.row->value);
  }
  const std::vector<const DasColumn*> shown = shownColumns(table, request);
  DasReadReply reply(table.schema);
  if (!shown.empty())
    for (const Database::Row& row : database.select(selectStatement(table, shown, request), shown.size(), values))
      writeRow(reply, table, shown, row);
  return reply.finished();
}

std::string updateTable(Database& database, const DasTable& table, const DasRequest& request)
{
  Database::Transaction transaction(database);
  if (!request.cells.empty())
    updateOnlyRow(database, table, request.cells);
  for (const std::vector<DasCell>& cells : request.entries)
    updateEntry(database, table, cells);
  std::string reply = dasUpdateReply(table.schema);
  transaction.commit();
  return reply;
}

std::optional<std::string> readCell(Database& database, const DasTable& table, const std::string& column,
                                    const DasCell& row)
{
  const DasColumn* wanted = table.find(column);
  const std::string index = table.indexed ? table.columns.front().name : std::string();
  if (wanted == nullptr || row.column != index)
    return std::nullopt;
  DasRequest request;
  request.resultColumn = column;
  if (table.indexed)
    request.row = row;
  const auto rows = database.select(selectStatement(table, {wanted}, request), 1,
                                    table.indexed ? Database::Values{row.value} : Database::Values{});
  return rows.empty() ? std::nullopt : rows.front().front();
}

SchemaDefinition definitionOf(Database& database, const DasTable& table)
{
  SchemaDefinition definition;
  definition.name = table.schema;
  for (const DasColumn& column : table.columns)
    definition.columns.push_back(column.name);
  if (!table.indexed)
    return definition;
  definition.indexColumn = definition.columns.front();
  definition.columns.erase(definition.columns.begin());
  for (Database::Row& row : database.select(selectStatement(table, {&table.columns.front()}, {}), 1))
    definition.indexValues.push_back(row.front().value_or(""));
  return definition;
}
} // namespace host
