#include "OCMSImportMap.h"

#include "ServiceDataManagerIfc.h"
#include "itemsByRootId.h"

OCMSImportMap::OCMSImportMap(std::vector<ManagedDataItem*>& items)
    : itemMap(sdm::itemsByRootId(items, [](const ManagedDataItem& item)
                                 { return item.dasSchema.empty() && item.setter != nullptr; }))
{
}

ManagedDataItem* OCMSImportMap::getItem(std::string key)
{
  return sdm::itemWithRootId(itemMap, key);
}

std::map<std::string, ManagedDataItem*>& OCMSImportMap::getItemMap()
{
  return itemMap;
}
