#include "DASImportMap.h"

#include <utility>

#include "ServiceDataManagerIfc.h"

bool operator<(const DasItemKey& lhs, const DasItemKey& rhs)
{
  const int order = lhs.item.compare(rhs.item);
  return order != 0 ? order < 0 : lhs.index < rhs.index;
}

namespace
{

void enter(DasSchemaInfo& info, DasItemKey key, ManagedDataItem& item)
{
  if (info.dasIndexName != item.dasIndexName)
    info.dasIndexName = item.dasIndexName;
  info.items.insert_or_assign(info.items.end(), std::move(key), &item);
}

} // namespace

DASImportMap::DASImportMap(std::vector<ManagedDataItem*>& items)
{
  // Items of one schema mostly stand together and in order.
  auto schema = schemas.end();
  for (ManagedDataItem* item : items)
  {
    if (item == nullptr || item->dasSchema.empty() || item->setter == nullptr)
      continue;
    if (schema == schemas.end() || schema->first != item->dasSchema)
      schema = schemas.try_emplace(item->dasSchema).first;
    enter(schema->second, {item->dasItem, item->dasIndexValue}, *item);
  }
}

void DASImportMap::setItem(const std::string& schema, const std::string& item, const std::string& index,
                           ManagedDataItem* data)
{
  if (data != nullptr)
    enter(schemas[schema], {item, index}, *data);
}

ManagedDataItem* DASImportMap::getItem(const std::string& schema, const std::string& item, const std::string& index)
{
  const auto info = schemas.find(schema);
  if (info == schemas.end())
    return nullptr;
  const auto found = info->second.items.find(DasItemKey{item, index});
  return found == info->second.items.end() ? nullptr : found->second;
}

std::string DASImportMap::getDasIndexName(const std::string& schema)
{
  const auto info = schemas.find(schema);
  return info == schemas.end() ? std::string() : info->second.dasIndexName;
}

std::map<std::string, DasSchemaInfo>& DASImportMap::getSchemaMap()
{
  return schemas;
}
