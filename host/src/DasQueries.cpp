// A read is one statement, an update one for each row, with all values bound. What does not fit the table is refused
// first.
#include "DasQueries.h"

#include <utility>
#include <vector>

#include "DasReply.h"
#include "DasUpdatePlan.h"
#include "Refusal.h"

namespace host
{
namespace
{
/// Room for a statement with few columns, so that it grows once.
constexpr std::size_t usualLength = 400;

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

/// Whether rows that never got the only column are left out, and all rows but the one named.
struct Selection
{
  bool writtenOnly = false;
  bool oneRow = false;
};

std::string selectStatement(const DasTable& table, const std::vector<const DasColumn*>& shown, Selection selection)
{
  std::string sql = "SELECT ";
  sql.reserve(usualLength);
  for (const DasColumn* column : shown)
    sql.append(column == shown.front() ? "" : ", ").append(column->sqlName);
  sql.append(" FROM ").append(table.sqlName);
  if (selection.writtenOnly)
    sql.append(" WHERE ").append(shown.back()->sqlName).append(" IS NOT NULL");
  if (selection.oneRow)
    sql.append(selection.writtenOnly ? " AND " : " WHERE ").append(table.columns.front().sqlName).append(" = :i");
  return sql.append(" ORDER BY ").append(table.rowOrder);
}

/// A row with its written cells; an indexed one shows its index column even when it has no other.
void showRow(DasReadReply& reply, const DasTable& table, const std::vector<const DasColumn*>& shown,
             const Connection::Row& row)
{
  if (table.indexed)
    reply.beginEntry();
  for (std::size_t i = 0; i < shown.size(); ++i)
    if (row[i])
      reply.column(shown[i]->name, shown[i]->isElementName, *row[i]);
  if (table.indexed)
    reply.endEntry();
}

void planEntry(DasUpdatePlan& plan, const DasTable& table, std::vector<DasCell>& cells)
{
  requireIndexColumn(table, cells.front().column);
  plan.beginRow(std::move(cells.front().value));
  for (std::size_t i = 1; i < cells.size(); ++i)
    plan.set(cells[i]);
}

void planOnlyRow(DasUpdatePlan& plan, const DasTable& table, std::vector<DasCell>& cells)
{
  if (table.indexed)
    throw Refusal("schema '" + table.schema + "' is indexed, so column '" + cells.front().column +
                  "' belongs into an 'Entry' after '" + table.columns.front().name + "'");
  plan.beginOnlyRow();
  for (DasCell& cell : cells)
    plan.set(cell);
}

/// Inserts the row, or updates it when it is there.
void writeRow(Connection& database, const DasTable& table, RowChange& change)
{
  const std::string& key = table.indexed ? table.columns.front().sqlName : table.rowOrder;
  std::string sql = "INSERT INTO ";
  sql.reserve(usualLength);
  sql.append(table.sqlName).append(" (").append(key);
  for (const DasColumn* column : change.columns)
    sql.append(", ").append(column->sqlName);
  sql.append(table.indexed ? ") VALUES (:k" : ") VALUES (1");
  for (std::size_t i = 0; i < change.columns.size(); ++i)
    sql.append(", :v").append(std::to_string(i));
  sql.append(") ON CONFLICT (").append(key).append(") DO UPDATE SET ");
  for (const DasColumn* column : change.columns)
    sql.append(column == change.columns.front() ? "" : ", ").append(column->assignment);
  database.execute(sql, std::move(change.values));
}
} // namespace

std::string readTable(Connection& database, const DasTable& table, const DasRequest& request)
{
  Connection::Values values;
  if (request.row)
  {
    requireIndexColumn(table, request.row->column);
    values.push_back(request.row->value);
  }
  const std::vector<const DasColumn*> shown = shownColumns(table, request);
  DasReadReply reply(table.schema);
  if (!shown.empty())
    database.select(selectStatement(table, shown, {request.resultColumn.has_value(), request.row.has_value()}),
                    shown.size(), std::move(values),
                    [&](const Connection::Row& row) { showRow(reply, table, shown, row); });
  return reply.finished();
}

std::string updateTable(Connection& database, const DasTable& table, DasRequest& request)
{
  DasUpdatePlan plan(table);
  if (!request.cells.empty())
    planOnlyRow(plan, table, request.cells);
  for (std::vector<DasCell>& cells : request.entries)
    planEntry(plan, table, cells);
  std::string reply = dasUpdateReply(table.schema);
  if (plan.rows.size() == 1)
  {
    // One statement is a transaction of its own.
    writeRow(database, table, plan.rows.front());
    return reply;
  }
  Connection::Transaction transaction(database);
  for (RowChange& row : plan.rows)
    writeRow(database, table, row);
  transaction.commit();
  return reply;
}

std::optional<std::string> readCell(Connection& database, const DasTable& table, const std::string& column,
                                    const DasCell& row)
{
  const DasColumn* wanted = table.find(column);
  const std::string index = table.indexed ? table.columns.front().name : std::string();
  if (wanted == nullptr || row.column != index)
    return std::nullopt;
  const auto rows = database.select(selectStatement(table, {wanted}, {true, table.indexed}), 1,
                                    table.indexed ? Connection::Values{row.value} : Connection::Values{});
  return rows.empty() ? std::nullopt : rows.front().front();
}

SchemaDefinition definitionOf(Connection& database, const DasTable& table)
{
  SchemaDefinition definition;
  definition.name = table.schema;
  for (const DasColumn& column : table.columns)
    definition.columns.push_back(column.name);
  if (!table.indexed)
    return definition;
  definition.indexColumn = definition.columns.front();
  definition.columns.erase(definition.columns.begin());
  for (const Connection::Row& row : database.select(selectStatement(table, {&table.columns.front()}, {}), 1))
    definition.indexValues.push_back(row.front().value_or(""));
  return definition;
}
} // namespace host
