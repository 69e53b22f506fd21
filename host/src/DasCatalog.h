// Which schemas there are and under which names the database keeps them.
//
// SQLite takes names that differ only in case for the same and has a few of its own, so a schema's table and a column
// may bear another name than the schema and the column; mostly it is the same one, for the sake of whoever looks into
// the file. The names stand in two tables of the catalog's own.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Connection.h"
#include "host/DataAccessService.h"

namespace host
{
struct DasColumn
{
  std::string name;
  /// The column's name in its table, unquoted.
  std::string identifier;
  /// Whether `name` can be written as an element of a reply.
  bool isElementName = true;
  /// The identifier, quoted.
  std::string sqlName = {};
  /// Takes the value that a statement for writing a row has for the column.
  std::string assignment = {};
};

struct DasTable
{
  std::string schema;
  /// The table's name, unquoted.
  std::string identifier = {};
  /// The identifier, quoted.
  std::string sqlName = {};
  /// The name of the column that holds the order of the rows, quoted.
  std::string rowOrder = {};
  /// Whether the first of the columns is the index column.
  bool indexed = false;
  std::vector<DasColumn> columns;
  std::unordered_map<std::string, std::size_t> columnsByName;

  /// Null when there is no such column.
  const DasColumn* find(const std::string& column) const;
  void add(DasColumn column);
};

/// The schemas of a database. A copy can be thrown away when the transaction that changed it fails.
class DasCatalog
{
public:
  /// The statements that make the catalog's tables in a new database.
  static std::vector<std::string> layout(const Dialect& dialect);

  /// Reads all there is.
  void load(Connection& database);

  /// Null when there is no such schema.
  const DasTable* find(const std::string& schema) const;

  /// In the order they were made.
  const std::vector<DasTable>& tables() const;

  /// Makes what is missing of a schema, rows included. Within a transaction of the caller.
  void provision(Connection& database, const SchemaDefinition& schema);

private:
  DasTable& makeTable(Connection& database, const SchemaDefinition& schema);
  void insert(DasTable table);

  std::vector<DasTable> all;
  std::unordered_map<std::string, std::size_t> tablesByName;
  /// Table names in use, in lower case.
  std::unordered_set<std::string> taken;
};
} // namespace host
