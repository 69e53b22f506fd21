// Answering a read request.
#include <ClientUtils.h>
#include <DataAccessServiceIfc.h>
#include <ManageableData.h>

#include "DASRequests.h"
#include "Log.h"
#include "Operation.h"

bool ServiceDataManager::getData(ManageableData& data)
{
  Operation operation(*this);
  // Asked first: without the database not even the items with a getter are answered.
  DataAccessServiceIfc* das = dataAccessIfc();
  if (das == nullptr)
  {
    SDM_LOG(2, "getData(%s) Can't find DataAccessService", serviceName.c_str());
    return false;
  }
  std::vector<std::string> rootIds;
  data.getRootIds(rootIds);
  bool answered = false;
  for (const std::string& rootId : rootIds)
  {
    ManagedDataItem* item = publishedItem(rootId);
    if (item == nullptr)
    {
      SDM_LOG(2, "getData(%s) unknown item \"%s\"", serviceName.c_str(), rootId.c_str());
      continue;
    }
    std::string value;
    if (!readItem(*item, rootId, *das, value))
      continue;
    data.populate(rootId, rootId, value);
    answered = true;
  }
  return answered;
}

bool ServiceDataManager::readItem(ManagedDataItem& item, const std::string& rootId, DataAccessServiceIfc& das,
                                  std::string& value)
{
  if (item.getter != nullptr)
  {
    value = item.getter->getValue(item.dasIndexValue);
    SDM_TRACE(5, "getData(%s) \"%s\" = \"%s\"", serviceName.c_str(), rootId.c_str(),
              ClientUtils::hidePassword(rootId, value).c_str());
    return true;
  }
  if (item.dasItem.empty())
    return false;
  value = readCell(item, das);
  return true;
}

std::string ServiceDataManager::readCell(ManagedDataItem& item, DataAccessServiceIfc& das)
{
  const std::string request = sdm::readCellRequest(item);
  SDM_TRACE(5, "getData(%s) sending request to DataAccessService \"%s\"", serviceName.c_str(), request.c_str());
  std::string text = das.sendRequest(request.data(), request.size());
  std::string value;
  // The answer is the last text of the reply, whichever column it names.
  if (parseXMLDasReply(text, false, &value))
    return decryptData(&item);
  SDM_TRACE(3, "getData bad XML reply from DataAccessService or data not found \"%s\"", text.c_str());
  return item.defaultValue;
}
