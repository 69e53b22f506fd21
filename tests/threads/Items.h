// The items of the load, and how they are written down as an item map.
#pragma once

#include <string>
#include <vector>

namespace threads
{

struct Item
{
  std::string rootId;
  std::string schema;
  std::string column;
  std::string row;
  bool hasGetter = true;
  bool userData = false;
  std::string group = "";
  bool encrypted = false;

  bool isLocal() const
  {
    return schema.empty();
  }
};

const std::vector<Item>& items();
const Item* findItem(const std::string& rootId);
const Item* findCell(const std::string& schema, const std::string& column, const std::string& row);

/// The root ids of all items for which `wanted` holds.
template <typename Wanted>
std::vector<std::string> rootIds(Wanted wanted)
{
  std::vector<std::string> found;
  for (const Item& item : items())
  {
    if (wanted(item))
      found.push_back(item.rootId);
  }
  return found;
}

/// Setting this one ends a life of the service and begins another, from within its setter.
constexpr const char* renewal = "control.renew";

/// The map as a file for the manager.
std::string itemMapFile();

/// One entry of the map as a dictionary, such as "/item[3]/rootId"; empty when there is none.
std::string dictionaryEntry(const std::string& key);

} // namespace threads
