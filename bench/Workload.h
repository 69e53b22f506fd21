// The items that everything is measured with: their map, and what the device holds of them.
//
// They resemble those of a device. Names are longer than a string holds without the heap, values are shorter; of ten
// items one lives in the local management store, and every fifth schema has rows. Everything follows from the shape, so
// that each run of each program measures the same.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace bench
{

struct Shape
{
  std::size_t items = 1000;
  std::size_t itemsPerSchema = 50;
  /// Each item belongs to the validation group of its schema.
  bool grouped = false;
  /// All items of the database belong to the user; otherwise one of ten does.
  bool allOfUser = false;
  /// How many rows every schema has; 0: every fifth has five, the others none.
  std::size_t rows = 0;
  /// The map's lines stand in no order that helps.
  bool shuffled = false;
};

struct Item
{
  std::string rootId;
  /// Empty for an item of the local management store.
  std::string schema;
  std::string column;
  /// Both empty for a schema without rows.
  std::string indexColumn;
  std::string indexValue;
  std::string setter;
  std::string getter;
  std::string userMark;
  std::string group;
};

struct Schema
{
  std::string name;
  std::string indexColumn;
  std::vector<std::string> indexValues;
  std::vector<std::string> columns;
};

extern const char* const defaultValue;
/// What getters answer, and what the database and the local management store hold.
extern const char* const liveValue;
/// What requests set, in turn: a database need not write what it holds already.
extern const char* const newValue;
extern const char* const nextValue;

class Workload
{
public:
  explicit Workload(const Shape& wanted);

  /// In the order of the map.
  std::vector<Item> items;
  std::vector<Schema> schemas;
  Shape shape;

  /// The root ids of the first items of the database, or of the store, in the order of the map.
  std::vector<std::string> databaseIds(std::size_t count) const;
  std::vector<std::string> storeIds(std::size_t count) const;

  /// `count` root ids of the database that lie in as many schemas as `schemaCount` says, evenly.
  std::vector<std::string> spreadIds(std::size_t count, std::size_t schemaCount) const;

  /// Writes CommsSettings.csv into the working directory.
  void writeFile() const;

  /// The same map as the entries of a dictionary.
  std::vector<std::pair<std::string, std::string>> dictionary() const;

private:
  void addSchema(std::size_t first, std::size_t end);
};

/// The names that the map refers to.
std::vector<std::string> setterNames();
std::vector<std::string> getterNames();

} // namespace bench
