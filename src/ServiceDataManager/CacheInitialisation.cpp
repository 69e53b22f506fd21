// Pushing defaults and imported values into the owning service.
#include "Log.h"
#include "Operation.h"
#include "beginsWith.h"

void ServiceDataManager::initialiseCacheItems(const std::string& prefix)
{
  // A copy, since a callback may load another map.
  const std::vector<ManagedDataItem*> loaded = items;
  for (ManagedDataItem* item : loaded)
  {
    if (item != nullptr && !item->dasSchema.empty() && item->setter != nullptr)
      initialiseCacheItem(*item, prefix);
  }
  for (const std::string& group : flaggedGroups())
  {
    std::string reason;
    if (!validateGroupedData(reason, group))
      SDM_LOG(2, "initialiseCacheItems %s failed validation \"%s\"", group.c_str(), reason.c_str());
  }
  removeAllGroupsFromNeedingValidation();
  groupsNeedingValidation.clear();
}

void ServiceDataManager::initialiseCacheItem(ManagedDataItem& item, const std::string& prefix)
{
  // Compared before the default goes in: what counts as changed is the value that the service held so far.
  if (item.getter != nullptr && item.getter->getValue(item.dasIndexValue) != item.defaultValue)
    changedItems.push_back(&item);
  const TriedValues tried(*this, item);
  if (!prefix.empty() && sdm::beginsWith(item.rootId, prefix))
  {
    SDM_TRACE(6, "initialiseCacheItems \"%s\" - setter not called", item.rootId.c_str());
  }
  else
  {
    std::string error;
    applyValue(item, item.defaultValue, error);
  }
  if (!item.isGroupItem.empty())
  {
    SDM_TRACE(6, "initialiseCacheItems \"%s\"  found to be part of the group \"%s\"", item.rootId.c_str(),
              item.isGroupItem.c_str());
    flagGroupForValidation(item.isGroupItem);
  }
}

void ServiceDataManager::setSingleDataItem(ManagedDataItem* item, const std::string& value, std::string& error)
{
  const TriedValues tried(*this, *item);
  const bool accepted = applyValue(*item, value, error);
  if (!accepted && error.find("NOT_CHANGED") == std::string::npos)
    SDM_TRACE(3, "setSingleDataItem set \"%s\" failed \"%s\"", item->rootId.c_str(), error.c_str());
  processItemForGroupData(item);
}

void ServiceDataManager::setSingleChangedDataItem(ManagedDataItem* item, const std::string& value, std::string& error)
{
  if (item->getter->getValue(item->dasIndexValue) == value)
    return;
  setSingleDataItem(item, value, error);
  changedItems.push_back(item);
}

bool ServiceDataManager::applyValue(ManagedDataItem& item, const std::string& value, std::string& error)
{
  return item.setter->setValue(value, item.dasIndexValue, error);
}
