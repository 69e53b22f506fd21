#include "DASImportMap.h"

#include "ServiceDataManagerIfc.h"

bool operator<(const DasItemKey& lhs, const DasItemKey& rhs)
{
  const int order = lhs.item.compare(rhs.item);
  return order != 0 ? order < 0 : lhs.index < rhs.index;
}

DASImportMap::DASImportMap(std::vector<ManagedDataItem*>& items)
{
  for (ManagedDataItem* item : items)
  {
    if (item != nullptr && !item->dasSchema.empty() && item->setter != nullptr)
      setItem(item->dasSchema, item->dasItem, item->dasIndexValue, item);
  }
}

void DASImportMap::setItem(const std::string& schema, const std::string& item, const std::string& index,
                           ManagedDataItem* data)
{
  if (data == nullptr)
    return;
  DasSchemaInfo& info = schemas[schema];
  info.dasIndexName = data->dasIndexName;
  info.items[DasItemKey{item, index}] = data;
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
