#include "Workload.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>

namespace bench
{

const char* const defaultValue = "5060";
const char* const liveValue = "5061";
const char* const newValue = "5062";
const char* const nextValue = "5063";

namespace
{

constexpr std::size_t callbackCount = 20;

std::string numbered(const char* name, std::size_t number, int width = 6)
{
  std::array<char, 24> digits{};
  std::snprintf(digits.data(), digits.size(), "%0*zu", width, number);
  return name + std::string(digits.data());
}

std::vector<std::string> callbackNames(const char* name)
{
  std::vector<std::string> names;
  for (std::size_t i = 0; i < callbackCount; ++i)
    names.push_back(numbered(name, i, 2));
  return names;
}

/// Steps that are no divisor of any size lead through all entries.
template <typename Entry>
std::vector<Entry> shuffled(const std::vector<Entry>& ordered)
{
  std::vector<Entry> result;
  for (std::size_t i = 0; i < ordered.size(); ++i)
    result.push_back(ordered[i * 7919 % ordered.size()]);
  return result;
}

} // namespace

std::vector<std::string> setterNames()
{
  return callbackNames("setNetworkValue");
}

std::vector<std::string> getterNames()
{
  return callbackNames("getNetworkValue");
}

Workload::Workload(const Shape& wanted) : shape(wanted)
{
  for (std::size_t first = 0; first < shape.items; first += shape.itemsPerSchema)
    addSchema(first, std::min(first + shape.itemsPerSchema, shape.items));
  if (shape.shuffled)
    items = shuffled(items);
}

void Workload::addSchema(std::size_t first, std::size_t end)
{
  const std::size_t number = first / shape.itemsPerSchema;
  const std::size_t rowsHere = shape.rows == 0 && number % 5 == 4 ? 5 : shape.rows;
  const bool hasRows = rowsHere > 0;
  Schema schema{numbered("NetworkSettings", number), hasRows ? "Line" : "", {}, {}};
  for (std::size_t row = 0; row < rowsHere; ++row)
    schema.indexValues.push_back(std::to_string(row + 1));
  for (std::size_t i = first; i < end; ++i)
  {
    Item item;
    item.rootId = numbered("phone.network.item", i);
    item.setter = numbered("setNetworkValue", number % callbackCount, 2);
    item.getter = numbered("getNetworkValue", number % callbackCount, 2);
    const bool inStore = i % 10 == 9;
    if (!inStore)
    {
      item.schema = schema.name;
      item.column = numbered("Setting", hasRows ? (i - first) / rowsHere : i);
      item.indexColumn = schema.indexColumn;
      item.indexValue = hasRows ? schema.indexValues[(i - first) % rowsHere] : "";
      item.userMark = shape.allOfUser || i % 10 == 0 ? "1" : "";
      item.group = shape.grouped ? schema.name : "";
      if (schema.columns.empty() || schema.columns.back() != item.column)
        schema.columns.push_back(item.column);
    }
    items.push_back(item);
  }
  schemas.push_back(schema);
}

std::vector<std::string> Workload::databaseIds(std::size_t count) const
{
  std::vector<std::string> ids;
  for (const Item& item : items)
  {
    if (!item.schema.empty() && ids.size() < count)
      ids.push_back(item.rootId);
  }
  return ids;
}

std::vector<std::string> Workload::storeIds(std::size_t count) const
{
  std::vector<std::string> ids;
  for (const Item& item : items)
  {
    if (item.schema.empty() && ids.size() < count)
      ids.push_back(item.rootId);
  }
  return ids;
}

std::vector<std::string> Workload::spreadIds(std::size_t count, std::size_t schemaCount) const
{
  std::vector<std::string> ids;
  for (std::size_t schema = 0; schema < schemaCount; ++schema)
  {
    std::size_t taken = 0;
    for (std::size_t i = schema * shape.itemsPerSchema; taken < count / schemaCount; ++i)
    {
      if (items.at(i).schema.empty())
        continue;
      ids.push_back(items[i].rootId);
      ++taken;
    }
  }
  return ids;
}

void Workload::writeFile() const
{
  std::FILE* file = std::fopen("CommsSettings.csv", "w");
  if (file == nullptr)
    throw std::runtime_error("CommsSettings.csv cannot be written");
  for (const Item& item : items)
    std::fprintf(file, "%s,%s,%s,%s,%s,%s,%s,%s,%s,%s,,\n", item.rootId.c_str(), item.schema.c_str(),
                 item.column.c_str(), item.indexColumn.c_str(), item.indexValue.c_str(), defaultValue,
                 item.setter.c_str(), item.getter.c_str(), item.userMark.c_str(), item.group.c_str());
  if (std::fclose(file) != 0)
    throw std::runtime_error("CommsSettings.csv cannot be written");
}

std::vector<std::pair<std::string, std::string>> Workload::dictionary() const
{
  std::vector<std::pair<std::string, std::string>> entries;
  for (std::size_t i = 0; i < items.size(); ++i)
  {
    const Item& item = items[i];
    const std::string key = "/item[" + std::to_string(i + 1) + "]/";
    for (const auto& [name, value] : {std::pair<const char*, std::string>{"rootId", item.rootId},
                                      {"dasSchema", item.schema},
                                      {"dasItem", item.column},
                                      {"dasIndexName", item.indexColumn},
                                      {"dasIndexValue", item.indexValue},
                                      {"default", defaultValue},
                                      {"setter", item.setter},
                                      {"getter", item.getter},
                                      {"userData", item.userMark},
                                      {"isGroupItem", item.group},
                                      {"dasEncrypted", ""}})
      entries.emplace_back(key + name, value);
  }
  return entries;
}

} // namespace bench
