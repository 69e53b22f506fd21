#include "OCMSSubscribeMap.h"

#include "ServiceDataManagerIfc.h"
#include "itemsByRootId.h"

OCMSSubscribeMap::OCMSSubscribeMap(std::vector<ManagedDataItem*>& items)
    : itemMap(sdm::itemsByRootId(items, [](const ManagedDataItem& item) { return item.dasSchema.empty(); }))
{
}

ManagedDataItem* OCMSSubscribeMap::getItem(std::string key)
{
  return sdm::itemWithRootId(itemMap, key);
}

std::map<std::string, ManagedDataItem*>& OCMSSubscribeMap::getItemMap()
{
  return itemMap;
}
