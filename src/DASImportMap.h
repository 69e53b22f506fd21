// The index by which replies of the Data Access Service find their items.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ServiceDataManagerExport.h"

class ManagedDataItem;

/// An item's place in its schema: column, and row of that column.
struct DasItemKey
{
  std::string item;
  std::string index;
};

/// Orders by column, then by row, both byte by byte: all rows of a column lie together.
SDM_EXPORT bool operator<(const DasItemKey& lhs, const DasItemKey& rhs);

/// What is known of one schema.
struct DasSchemaInfo
{
  /// The index column, as the item entered last names it. Items of one schema are expected to agree.
  std::string dasIndexName;
  /// Not owned.
  std::map<DasItemKey, ManagedDataItem*> items;
};

/// The items that an import from the database can reach: those with a schema and a setter.
///
/// Built once over the manager's items, which it must not outlive, and only read afterwards. Of items with the
/// same schema, column and row the last one counts. No lock of its own.
class SDM_EXPORT DASImportMap
{
public:
  /// Null entries are passed over. The vector is only read.
  explicit DASImportMap(std::vector<ManagedDataItem*>& items);

  /// Enters one item; its index name becomes the schema's. Null is not entered.
  void setItem(const std::string& schema, const std::string& item, const std::string& index, ManagedDataItem* data);

  /// The item, or null.
  ManagedDataItem* getItem(const std::string& schema, const std::string& item, const std::string& index);

  /// The schema's index column; empty for an unknown schema and for one without rows.
  std::string getDasIndexName(const std::string& schema);

  std::map<std::string, DasSchemaInfo>& getSchemaMap();

private:
  std::map<std::string, DasSchemaInfo> schemas;
};
