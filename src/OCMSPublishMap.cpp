#include "OCMSPublishMap.h"

#include "ServiceDataManagerIfc.h"
#include "itemsByRootId.h"

OCMSPublishMap::OCMSPublishMap(std::vector<ManagedDataItem*>& items)
    : itemMap(sdm::itemsByRootId(items, [](const ManagedDataItem& item) { return !item.dasSchema.empty(); }))
{
}

ManagedDataItem* OCMSPublishMap::getItem(std::string key)
{
  return sdm::itemWithRootId(itemMap, key);
}

std::map<std::string, ManagedDataItem*>& OCMSPublishMap::getItemMap()
{
  return itemMap;
}
