// Items that belong to the user: back to their defaults, and again from the database.
#include <map>
#include <string_view>
#include <utility>

#include <DasCrypt.h>
#include <DataAccessServiceIfc.h>
#include <LocalMgmtIfc.h>
#include <ManageableData.h>
#include <ValidatorIfc.h>

#include "DASRequests.h"
#include "Log.h"
#include "Operation.h"
#include "isEncrypted.h"

namespace
{

/// All items of a table by root id, the ones that share a root id in the order of the table. Borrows their texts.
using ItemsByRootId = std::multimap<std::string_view, ManagedDataItem*>;

ItemsByRootId allByRootId(const std::vector<ManagedDataItem*>& items)
{
  ItemsByRootId byRootId;
  for (ManagedDataItem* item : items)
  {
    if (item != nullptr)
      byRootId.emplace_hint(byRootId.end(), item->rootId, item);
  }
  return byRootId;
}

template <typename Visit>
void forEachItem(const ItemsByRootId& items, const std::vector<std::string>& rootIds, Visit visit)
{
  for (const std::string& rootId : rootIds)
  {
    const auto [first, last] = items.equal_range(rootId);
    for (auto item = first; item != last; ++item)
      visit(*item->second);
  }
}

} // namespace

bool ServiceDataManager::setDefaultUserData()
{
  Operation operation(*this);
  const ItemsByRootId itemsByRootId = allByRootId(items);
  ManageableData candidates;
  forEachItem(itemsByRootId, std::vector<std::string>(userDataIds),
              [&](const ManagedDataItem& item)
              {
                if (item.getter != nullptr && item.getter->getValue(item.dasIndexValue) != item.defaultValue)
                  candidates.addRootId(item.rootId, nullptr);
              });

  LocalMgmtIfc* store = ocmsIfc();
  if (store == nullptr)
  {
    SDM_LOG(2, "setDefaultUserData Can't find OCMS");
    return false;
  }
  store->checkData(candidates, nullptr);
  if (!candidates.getRootId().empty())
    return false;
  std::vector<std::string> rootIds;
  candidates.getRootIds(rootIds);
  if (rootIds.empty())
    return false;

  DataAccessServiceIfc* das = dataAccessIfc();
  if (das == nullptr)
  {
    SDM_LOG(2, "setDefaultUserData Can't find DataAccessService");
    return false;
  }
  ManageableData published;
  forEachItem(itemsByRootId, rootIds,
              [&](ManagedDataItem& item)
              {
                lockIsHeld();
                resetItem(item, *das, published);
              });
  return store->publishData(published);
}

void ServiceDataManager::resetItem(ManagedDataItem& item, DataAccessServiceIfc& das, ManageableData& published)
{
  std::string cell;
  if (sdm::isEncrypted(item))
    DasCrypt::toEncryptedText(item.defaultValue, cell);
  else
    cell = item.defaultValue;
  const std::string request = sdm::updateCellRequest(item, cell);
  std::string text = das.sendRequest(request.data(), request.size());
  if (!parseXMLDasReply(text, true, nullptr))
    SDM_TRACE(3, "setDefaultUserData bad XML reply from DataAccessService \"%s\"", text.c_str());

  const TriedValues tried(*this, item);
  std::string reason = "no setter available";
  if (!item.dasSchema.empty() && item.setter != nullptr)
    applyValue(item, item.defaultValue, reason);
  published.populate(item.rootId, item.rootId, item.defaultValue);
}

std::vector<ServiceDataManager::SetDataBlob> ServiceDataManager::convertDASUserItemToLocal()
{
  std::vector<SetDataBlob> blobs;
  for (const std::string& rootId : std::vector<std::string>(userDataIds))
    blobs.push_back(readUserItem(rootId));
  return blobs;
}

ServiceDataManager::SetDataBlob ServiceDataManager::readUserItem(const std::string& rootId)
{
  SDM_TRACE(4, "convertDASUserItemToLocal %s", rootId.c_str());
  std::string value;
  importItemFromDAS(rootId, value);
  // An item that is not published was reported by the read; its record is refused as unknown later on.
  ManagedDataItem* item = publishedItem(rootId);
  if (item != nullptr && sdm::isEncrypted(*item) && !value.empty())
  {
    std::string plain;
    if (DasCrypt::fromEncryptedText(value, plain))
      value = std::move(plain);
    else
      SDM_LOG(2, "decryptData failed to base64decode data item");
    // Either may have called the manager.
    item = publishedItem(rootId);
  }
  return {rootId, std::move(value), item};
}

void ServiceDataManager::reloadUserData()
{
  Operation operation(*this);
  SDM_TRACE(4, "reloadUserData %d", static_cast<int>(userDataIds.size()));
  std::vector<SetDataBlob> blobs = convertDASUserItemToLocal();
  const TriedValues tried(*this, blobs);
  trySetData(blobs);
  auto requests = populateDasRequestMapWith(blobs);
  for (const std::string& group : flaggedGroups())
  {
    if (validator != nullptr)
      validator->reloadGroup(group);
  }
  for (const GroupDataBlob& group : validateAllGroups())
  {
    if (group.valid)
      updateDasRequestSingleValidGroup(requests, group.groupName);
    else
      SDM_LOG(2, "reloadUserData failed because \"%s\" for group: \"%s\"", group.reason.c_str(),
              group.groupName.c_str());
  }
  removeAllGroupsFromNeedingValidation();
  groupsNeedingValidation.clear();
  operation.groupsAreJudged();
  sendDASRequests(requests, dataAccessIfc());
}
