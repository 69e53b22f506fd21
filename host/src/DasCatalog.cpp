// Names of schemas and columns become identifiers once, when they are made, and stand in the database from then on.
#include "DasCatalog.h"

#include "DasRequest.h"
#include "XmlText.h"
#include "host/Error.h"

namespace host
{
namespace
{
/// Holds the order of the rows; no column of a schema gets this name.
const char* const rowOrderColumn = "~row";

DasTable newTable(const Dialect& dialect, const std::string& schema, const std::string& identifier, bool indexed)
{
  DasTable table;
  table.schema = schema;
  table.identifier = identifier;
  table.sqlName = dialect.quoted(identifier);
  table.rowOrder = dialect.quoted(rowOrderColumn);
  table.indexed = indexed;
  return table;
}

DasColumn newColumn(const Dialect& dialect, const std::string& name, const std::string& identifier)
{
  const std::string sqlName = dialect.quoted(identifier);
  return {name, identifier, isElementName(name), sqlName, sqlName + " = excluded." + sqlName};
}

std::string lowered(std::string text)
{
  // SQLite, too, folds the case of ASCII letters only.
  for (char& character : text)
    if (character >= 'A' && character <= 'Z')
      character = static_cast<char>(character - 'A' + 'a');
  return text;
}

/// A name like `wanted` that is not taken yet; takes it.
std::string takeIdentifier(const Dialect& dialect, const std::string& wanted, std::unordered_set<std::string>& taken)
{
  const std::string base = dialect.isReserved(lowered(wanted)) ? "~" + wanted : wanted;
  std::string candidate = base;
  for (int number = 2; !taken.insert(lowered(candidate)).second; ++number)
    candidate = base + "~" + std::to_string(number);
  return candidate;
}

std::unordered_set<std::string> takenColumns(const DasTable& table)
{
  std::unordered_set<std::string> taken = {rowOrderColumn};
  for (const DasColumn& column : table.columns)
    taken.insert(lowered(column.identifier));
  return taken;
}

void requireName(const std::string& name, const std::string& what)
{
  if (name.empty())
    throw Error(what + " has an empty name");
  if (!isXmlText(name))
    throw Error(what + " has a name that XML cannot carry");
}

void requireColumnName(const std::string& name, const std::string& schema)
{
  requireName(name, "a column of schema '" + schema + "'");
  if (isMessageElement(name))
    throw Error("schema '" + schema + "': column '" + name + "' is named like an element of the messages");
}

void requireSound(const SchemaDefinition& schema)
{
  requireName(schema.name, "a schema");
  if (!schema.indexColumn.empty())
    requireColumnName(schema.indexColumn, schema.name);
  for (const std::string& column : schema.columns)
    requireColumnName(column, schema.name);
  if (schema.indexColumn.empty() && !schema.indexValues.empty())
    throw Error("schema '" + schema.name + "' has index values but no index column");
  for (const std::string& value : schema.indexValues)
    if (!isXmlText(value))
      throw Error("schema '" + schema.name + "' has an index value that XML cannot carry");
}

void requireSameIndex(const DasTable& table, const SchemaDefinition& schema)
{
  const std::string present = table.indexed ? table.columns.front().name : std::string();
  if (present != schema.indexColumn)
    throw Error("schema '" + schema.name + "' is indexed by '" + present + "' and cannot be by '" + schema.indexColumn +
                "'");
}

void recordColumn(Connection& database, const DasTable& table, const DasColumn& column)
{
  database.execute("INSERT INTO \"~columns\" (schema, position, name, identifier) VALUES (:s, :p, :n, :i)",
                   {table.schema, std::to_string(table.columns.size()), column.name, column.identifier});
}

void addMissingColumns(Connection& database, DasTable& table, const std::vector<std::string>& columns)
{
  std::unordered_set<std::string> taken = takenColumns(table);
  for (const std::string& name : columns)
  {
    if (table.find(name) != nullptr)
      continue;
    const DasColumn column = newColumn(database.dialect(), name, takeIdentifier(database.dialect(), name, taken));
    database.executeOnce("ALTER TABLE " + table.sqlName + " ADD COLUMN " + column.sqlName + " TEXT");
    recordColumn(database, table, column);
    table.add(column);
  }
}

void addMissingRows(Connection& database, const DasTable& table, const std::vector<std::string>& indexValues)
{
  if (indexValues.empty())
    return;
  const std::string sql =
      "INSERT INTO " + table.sqlName + " (" + table.columns.front().sqlName + ") VALUES (:v) ON CONFLICT DO NOTHING";
  for (const std::string& value : indexValues)
    database.execute(sql, {value});
}
} // namespace

const DasColumn* DasTable::find(const std::string& column) const
{
  const auto found = columnsByName.find(column);
  return found == columnsByName.end() ? nullptr : &columns[found->second];
}

void DasTable::add(DasColumn column)
{
  columnsByName.emplace(column.name, columns.size());
  columns.push_back(std::move(column));
}

std::vector<std::string> DasCatalog::layout(const Dialect& dialect)
{
  return {"CREATE TABLE \"~schemas\" (number " + dialect.rowNumberType() +
              ", name TEXT NOT NULL UNIQUE, identifier TEXT NOT NULL, indexed INTEGER NOT NULL)",
          "CREATE TABLE \"~columns\" (schema TEXT NOT NULL, position INTEGER NOT NULL, name TEXT NOT NULL, "
          "identifier TEXT NOT NULL, PRIMARY KEY (schema, name))"};
}

void DasCatalog::load(Connection& database)
{
  for (const Connection::Row& row : database.select(database.dialect().namesInUse(), 1))
    taken.insert(row.at(0).value_or(""));
  for (const Connection::Row& row :
       database.select("SELECT name, identifier, CAST(indexed AS TEXT) FROM \"~schemas\" ORDER BY number", 3))
  {
    insert(newTable(database.dialect(), row.at(0).value_or(""), row.at(1).value_or(""), row.at(2) == "1"));
  }
  for (const Connection::Row& row :
       database.select("SELECT schema, name, identifier FROM \"~columns\" ORDER BY schema, position", 3))
  {
    const auto table = tablesByName.find(row.at(0).value_or(""));
    if (table == tablesByName.end())
      throw Error("the database's catalog names a column of an unknown schema");
    all[table->second].add(newColumn(database.dialect(), row.at(1).value_or(""), row.at(2).value_or("")));
  }
}

const DasTable* DasCatalog::find(const std::string& schema) const
{
  const auto found = tablesByName.find(schema);
  return found == tablesByName.end() ? nullptr : &all[found->second];
}

const std::vector<DasTable>& DasCatalog::tables() const
{
  return all;
}

void DasCatalog::provision(Connection& database, const SchemaDefinition& schema)
{
  requireSound(schema);
  const auto found = tablesByName.find(schema.name);
  DasTable& table = found == tablesByName.end() ? makeTable(database, schema) : all[found->second];
  requireSameIndex(table, schema);
  addMissingColumns(database, table, schema.columns);
  addMissingRows(database, table, schema.indexValues);
}

DasTable& DasCatalog::makeTable(Connection& database, const SchemaDefinition& schema)
{
  const Dialect& dialect = database.dialect();
  DasTable table =
      newTable(dialect, schema.name, takeIdentifier(dialect, schema.name, taken), !schema.indexColumn.empty());
  std::string columns = table.rowOrder + " " + dialect.rowNumberType();
  database.execute("INSERT INTO \"~schemas\" (name, identifier, indexed) VALUES (:n, :i, :x)",
                   {table.schema, table.identifier, table.indexed ? "1" : "0"});
  if (table.indexed)
  {
    std::unordered_set<std::string> takenBefore = takenColumns(table);
    const DasColumn index =
        newColumn(dialect, schema.indexColumn, takeIdentifier(dialect, schema.indexColumn, takenBefore));
    columns += ", " + index.sqlName + " TEXT NOT NULL UNIQUE";
    recordColumn(database, table, index);
    table.add(index);
  }
  // All at once: adding a column to a table that is there takes the longer the more columns it has.
  std::unordered_set<std::string> takenHere = takenColumns(table);
  for (const std::string& name : schema.columns)
  {
    if (table.find(name) != nullptr)
      continue;
    const DasColumn column = newColumn(dialect, name, takeIdentifier(dialect, name, takenHere));
    columns += ", " + column.sqlName + " TEXT";
    recordColumn(database, table, column);
    table.add(column);
  }
  database.executeOnce("CREATE TABLE " + table.sqlName + " (" + columns + ")");
  insert(std::move(table));
  return all.back();
}

void DasCatalog::insert(DasTable table)
{
  tablesByName.emplace(table.schema, all.size());
  all.push_back(std::move(table));
}
} // namespace host
