// Gathering accepted values into one update request per schema, and sending them.
#include <ctime>
#include <exception>
#include <utility>

#include <ClientUtils.h>
#include <DasCrypt.h>
#include <DataAccessServiceIfc.h>
#include <RejectReasonsStrings.h>
#include <SecurityLogServiceIfc.h>
#include <ValidatorIfc.h>

#include "DASRequests.h"
#include "Log.h"
#include "ServiceDataManager.h"
#include "beginsWith.h"
#include "consctructSecurityLog.h"
#include "isEncrypted.h"
#include "isSecurityLogRequired.h"

std::map<std::string, std::string> ServiceDataManager::populateDasRequestMapWith(const std::vector<SetDataBlob>& blobs)
{
  std::map<std::string, std::string> requests;
  for (const SetDataBlob& blob : blobs)
  {
    if (blob.item == nullptr)
      continue;
    // A value that is refused because nothing would change is written all the same.
    const bool taken = blob.validated || sdm::beginsWith(blob.reason, RejectReasonsStrings::not_changed);
    if (!blob.item->isGroupItem.empty())
    {
      // The last record of a group decides whether the group is judged at all, whatever came before it.
      flagGroupForValidation(blob.item->isGroupItem);
      if (!taken)
        clearFlagGroupForValidation(blob.item->isGroupItem);
    }
    else if (!blob.item->dasItem.empty() && taken)
    {
      addDASItemEntry(requests, blob.item, blob.value);
    }
  }
  return requests;
}

void ServiceDataManager::addDASItemEntry(std::map<std::string, std::string>& requests, ManagedDataItem* item,
                                         const std::string& value)
{
  std::string cell;
  if (sdm::isEncrypted(*item))
    DasCrypt::toEncryptedText(value, cell);
  else
    cell = ClientUtils::escapeXMLString(value);
  if (isSecurityLogRequired(item->dasSchema, item->dasItem))
    pendingSecurityLogRecords.push_back(consctructSecurityLog(item, value));

  auto request = requests.find(item->dasSchema);
  if (request == requests.end())
    request = requests.emplace(item->dasSchema, sdm::beginUpdateRequest(item->dasSchema)).first;
  const std::size_t before = request->second.size();
  sdm::addUpdateCell(request->second, *item, cell);
  SDM_TRACE(6, "addDASItemEntry:'%s'\n", request->second.c_str() + before);
}

void ServiceDataManager::updateDasRequestSingleValidGroup(std::map<std::string, std::string>& requests,
                                                          const std::string& group)
{
  if (validator == nullptr)
    return;
  const auto accepted = validator->getValidGroupItems(group);
  SDM_TRACE(6, "found %d valid items", static_cast<int>(accepted.size()));
  for (const auto& [rootId, value] : accepted)
  {
    ManagedDataItem* item = publishedItem(rootId);
    if (item == nullptr)
    {
      SDM_LOG(2, "%s is NULL\n", rootId.c_str());
      continue;
    }
    SDM_TRACE(6, "\"%s\" = \"%s\", das item name %sfound", item->dasItem.c_str(),
              ClientUtils::hidePassword(item->rootId, value).c_str(), item->dasItem.empty() ? "NOT " : "");
    if (!item->dasItem.empty())
      addDASItemEntry(requests, item, value);
  }
}

bool ServiceDataManager::sendDASRequests(std::map<std::string, std::string>& requests, DataAccessServiceIfc* das)
{
  SDM_TRACE(5, "sendDASRequests");
  if (das == nullptr)
    return false;

  // Only the last schema's outcome counts; failures of earlier ones are logged.
  bool sent = false;
  recordsToKeep = pendingSecurityLogRecords.size();
  try
  {
    for (auto& request : requests)
    {
      sdm::endUpdateRequest(request.second);
      sent = sendUpdateRequest(*das, request.second);
    }
  }
  catch (...)
  {
    // Part of the changes may have been made, so the security log has to hear of them before the caller does.
    handOverAfterFailedSend();
    throw;
  }
  handOverSecurityLogRecords(!sent);
  return requests.empty() || sent;
}

bool ServiceDataManager::sendUpdateRequest(DataAccessServiceIfc& das, const std::string& request)
{
  SDM_TRACE(5, "sendDASRequests sending request \"%s\"", request.c_str());
  std::string text = das.sendRequest(request.data(), request.size());
  const bool accepted = parseXMLDasReply(text, false, nullptr);
  if (!accepted)
    SDM_LOG(2, "sendDASRequests bad XML reply from DataAccessService \"%s\"", text.c_str());
  SDM_TRACE(5, "sendDASRequests received reply \"%s\"", text.c_str());
  return accepted;
}

void ServiceDataManager::handOverSecurityLogRecords(bool failed)
{
  if (pendingSecurityLogRecords.empty())
    return;
  SecurityLogServiceIfc* securityLog = securityLogIfc();
  if (securityLog == nullptr)
    return;
  const time_t now = std::time(nullptr);
  // Taken out first, since the service may call the manager; and each record gets its turn, whatever became of
  // the one before it.
  std::exception_ptr failure;
  for (const std::string& record : std::exchange(pendingSecurityLogRecords, {}))
  {
    try
    {
      securityLog->logSecurityEvent(now, 4, 1, 5, 3, failed, record, "", "");
    }
    catch (...)
    {
      if (failure == nullptr)
        failure = std::current_exception();
    }
  }
  if (failure != nullptr)
    std::rethrow_exception(failure);
}

void ServiceDataManager::handOverAfterFailedSend() noexcept
{
  try
  {
    handOverSecurityLogRecords(true);
  }
  catch (...)
  {
    // The caller learns of the failure that came first.
  }
}
