// One of the two maps that are compared: which of its lines counts for what.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "map/ItemText.h"

namespace cli::diff
{

/// Schema, column, index value: where the database keeps a value.
using Cell = std::tuple<std::string_view, std::string_view, std::string_view>;

Cell cellOf(const ItemText& item);

struct CellHash
{
  std::size_t operator()(const Cell& cell) const;
};

/// Which item gets what a cell holds.
using Readers = std::unordered_map<Cell, const ItemText*, CellHash>;

/// Whether the item has a cell that a reply of the database can name.
bool hasCell(const ItemText& item);

/// How a schema is read at a start.
struct SchemaUse
{
  std::string_view indexName;
  /// The item that decides: the last one with a setter.
  const ItemText* decides = nullptr;
};

/// Borrows the map, and points into itself.
class Side
{
public:
  /// The last item of each root id: the one that requests find.
  using ByRootId = std::unordered_map<std::string_view, const ItemText*>;

  explicit Side(const MapText& map);
  Side(const Side&) = delete;
  Side& operator=(const Side&) = delete;

  /// Every line that the library loads, in the order of the file.
  const std::vector<ItemText>& items() const
  {
    return all;
  }
  const ByRootId& database() const
  {
    return inDatabase;
  }
  const ByRootId& local() const
  {
    return inLocalStore;
  }
  /// The last item of a cell that has a setter, or the last one where none has.
  const Readers& readers() const
  {
    return cells;
  }
  /// The schemas that a start asks for.
  const std::map<std::string_view, SchemaUse>& schemas() const
  {
    return asked;
  }
  /// Null when requests find no item of that root id in that store.
  const ItemText* find(std::string_view rootId, bool inStore) const;
  /// Whether a line of the root id has the mark: resets go by root id, not by line.
  bool isUserData(std::string_view rootId) const
  {
    return userData.count(rootId) != 0;
  }
  /// Whether a value of the item has to be hidden: one that any line of its root id encrypts, or was meant to encrypt,
  /// and one that looks like a secret by a name.
  bool isSecret(const ItemText& item) const;
  /// Whether requests find this line.
  bool isFound(const ItemText& item) const
  {
    return find(item[Column::rootId], item.isLocal()) == &item;
  }

private:
  void add(const ItemText& item);

  std::vector<ItemText> all;
  ByRootId inDatabase;
  ByRootId inLocalStore;
  Readers cells;
  std::map<std::string_view, SchemaUse> asked;
  std::unordered_set<std::string_view> userData;
  std::unordered_set<std::string_view> encrypted;
};

} // namespace cli::diff
