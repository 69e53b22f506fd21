// Finding items: by root id through the indexes of the local management store, or by the name of their column.
#include <algorithm>

#include "Hold.h"
#include "OCMSPublishMap.h"
#include "OCMSSubscribeMap.h"
#include "ServiceDataManager.h"
#include "itemsByRootId.h"

ManagedDataItem* ServiceDataManager::getItem(const std::string& name)
{
  const Hold hold(*this);
  return observedItem(name);
}

ManagedDataItem* ServiceDataManager::observedItem(const std::string& rootId) const
{
  return ocmsSubscribeMap ? sdm::itemWithRootId(ocmsSubscribeMap->getItemMap(), rootId) : nullptr;
}

ManagedDataItem* ServiceDataManager::getPublishedItem(const std::string& name)
{
  const Hold hold(*this);
  return publishedItem(name);
}

ManagedDataItem* ServiceDataManager::publishedItem(const std::string& rootId) const
{
  return ocmsPublishMap ? sdm::itemWithRootId(ocmsPublishMap->getItemMap(), rootId) : nullptr;
}

bool ServiceDataManager::isItemManaged(const std::string& name) const
{
  return std::any_of(items.begin(), items.end(),
                     [&](const ManagedDataItem* item) { return item != nullptr && item->dasItem == name; });
}
