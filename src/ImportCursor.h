// Finding the items of a reply's columns.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <string>

#include "DASImportMap.h"

namespace sdm
{

/// Looks up one column of a reply after the other in the items of its schema.
///
/// Databases answer in the order of the index, mostly: the next row has the next entry of each column, and without rows
/// the next column has the next entry. That one is tried before the index is searched.
class ImportCursor
{
public:
  using Items = std::map<DasItemKey, ManagedDataItem*>;

  /// Starts over in the items of another schema, which are borrowed; null when there are none.
  void start(const Items* schemaItems);

  /// The columns of a row follow.
  void startRow()
  {
    position = 0;
  }

  /// The item of this column in this row, or null.
  ManagedDataItem* find(const char* column, const std::string& row);

private:
  [[nodiscard]] Items::const_iterator search(const char* column, const std::string& row);

  const Items* items = nullptr;
  /// For each column of a row, as far as they have room: the entry behind the one that it had in the row before.
  std::array<Items::const_iterator, 16> following;
  std::size_t known = 0;
  /// The number of the next column in its row.
  std::size_t position = 0;
  /// The entry behind the one that was found last.
  Items::const_iterator next;
  /// What is searched for; kept for its room.
  DasItemKey place;
};

} // namespace sdm
