// Answering a set request.
#include <utility>

#include <ClientUtils.h>
#include <ManageableData.h>
#include <RejectReasonsStrings.h>

#include "Log.h"
#include "Operation.h"
#include "beginsWith.h"

bool ServiceDataManager::setData(ManageableData& data)
{
  Operation operation(*this);
  operation.dropPendingRecords();

  std::vector<SetDataBlob> blobs = convertManageableDataToLocal(data);
  const TriedValues tried(*this, blobs);
  SDM_TRACE(5, "setData %d\n", static_cast<int>(blobs.size()));
  trySetData(blobs);
  auto requests = populateDasRequestMapWith(blobs);
  for (const GroupDataBlob& group : validateAllGroups())
  {
    if (group.valid)
    {
      updateDasRequestSingleValidGroup(requests, group.groupName);
      continue;
    }
    SDM_LOG(2, "setData failed because \"%s\" for group: \"%s\"", group.reason.c_str(), group.groupName.c_str());
    data.addRejectReason("", "/", group.reason);
  }
  removeAllGroupsFromNeedingValidation();
  groupsNeedingValidation.clear();
  operation.groupsAreJudged();

  rejectRefusedItems(blobs, data);
  // Accepted values are written even when others of the request were refused.
  const bool sent = sendDASRequests(requests, dataAccessIfc());
  return isSetOperationSuccessful(sent, data);
}

std::vector<ServiceDataManager::SetDataBlob>
ServiceDataManager::convertManageableDataToLocal(ManageableData& data) const
{
  std::vector<std::string> rootIds;
  data.getRootIds(rootIds);
  std::vector<SetDataBlob> blobs;
  blobs.reserve(rootIds.size());
  for (std::string& rootId : rootIds)
  {
    std::string value;
    data.interogate(rootId, rootId, value);
    ManagedDataItem* item = publishedItem(rootId);
    blobs.emplace_back(std::move(rootId), std::move(value), item);
  }
  return blobs;
}

void ServiceDataManager::trySetData(std::vector<SetDataBlob>& blobs) const
{
  for (SetDataBlob& blob : blobs)
  {
    if (blob.item == nullptr)
    {
      blob.reason = "unknown item";
      SDM_TRACE(4, "trySetData \"%s\" \"%s\"", blob.reason.c_str(), blob.rootId.c_str());
      continue;
    }
    SDM_TRACE(4, "trySetData \"%s\" = \"%s\"", blob.rootId.c_str(),
              ClientUtils::hidePassword(blob.rootId, blob.value).c_str());
    blob.validated = setData(blob.item, blob.value, blob.reason);
  }
}

bool ServiceDataManager::setData(ManagedDataItem* item, const std::string& value, std::string& error) const
{
  bool accepted = false;
  if (item->setter != nullptr)
  {
    error.clear();
    accepted = item->setter->setValue(value, item->dasIndexValue, error);
  }
  else
  {
    error = "no setter available";
  }
  SDM_TRACE(5, "setData \"%s\" = \"%s\", validated=\"%s\" \"%s\"", item->rootId.c_str(),
            ClientUtils::hidePassword(item->rootId, value).c_str(), accepted ? "true" : "false", error.c_str());
  return accepted;
}

void ServiceDataManager::rejectRefusedItems(const std::vector<SetDataBlob>& blobs, ManageableData& data) const
{
  for (const SetDataBlob& blob : blobs)
  {
    if (!blob.validated || sdm::beginsWith(blob.reason, RejectReasonsStrings::unchanged_data))
      data.addRejectReason(blob.rootId, blob.rootId, blob.reason);
  }
}

bool ServiceDataManager::isSetOperationSuccessful(bool dasResult, ManageableData& data)
{
  if (!dasResult)
    return false;
  return data.isRejectListEmpty() || data.areAllRejectReasons(RejectReasonsStrings::unchanged_data);
}
