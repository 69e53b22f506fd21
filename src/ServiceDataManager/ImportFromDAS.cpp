// Reading item values from the database: all of them at start-up, or one for a caller.
#include <DataAccessServiceIfc.h>

#include "DASImportMap.h"
#include "DASRequests.h"
#include "Log.h"
#include "Operation.h"

void ServiceDataManager::importFromDAS()
{
  SDM_TRACE(5, "importFromDAS");
  DataAccessServiceIfc* das = dataAccessIfc();
  if (das == nullptr)
  {
    SDM_LOG(2, "importFromDAS Can't find DataAccessService");
    return;
  }
  for (const std::string& schema : importedSchemas())
  {
    const std::string request = sdm::readSchemaRequest(schema);
    std::string text = das->sendRequest(request.data(), request.size());
    if (!parseXMLDasReply(text, true, nullptr))
      SDM_TRACE(3, "importFromDAS bad XML reply from DataAccessService \"%s\"", text.c_str());
  }

  // Not emptied between groups: a validator that refuses without a reason is reported with the one before.
  std::string reason;
  for (const std::string& group : flaggedGroups())
  {
    if (!validateGroupedData(reason, group))
      SDM_LOG(2, "importFromDAS \"%s\"  group: %s", reason.c_str(), group.c_str());
  }
  removeAllGroupsFromNeedingValidation();
  groupsNeedingValidation.clear();
}

std::vector<std::string> ServiceDataManager::importedSchemas() const
{
  std::vector<std::string> schemas;
  if (dasImportMap != nullptr)
  {
    for (const auto& schema : dasImportMap->getSchemaMap())
      schemas.push_back(schema.first);
  }
  return schemas;
}

void ServiceDataManager::importItemFromDAS(const std::string& rootId, std::string& value)
{
  Operation operation(*this);
  std::string text = readItemFromDAS(rootId);
  value.swap(text);
  SDM_TRACE(4, "importItemFromDAS value \"%s\"", value.c_str());
}

std::string ServiceDataManager::readItemFromDAS(const std::string& rootId)
{
  const ManagedDataItem* item = publishedItem(rootId);
  if (item == nullptr)
  {
    SDM_LOG(2, "importItemFromDAS unknown item \"%s\"", rootId.c_str());
    return "";
  }
  SDM_TRACE(4, "importItemFromDAS \"%s\" ", rootId.c_str());
  DataAccessServiceIfc* das = dataAccessIfc();
  if (das == nullptr)
  {
    SDM_LOG(2, "importItemFromDAS Can't find DataAccessService");
    return "";
  }
  const std::string request = sdm::readColumnRequest(*item);
  SDM_TRACE(4, "importItemFromDAS sending request to DataAccessService \"%s\"", request.c_str());
  std::string text = das->sendRequest(request.data(), request.size());
  SDM_TRACE(4, "importItemFromDAS reply from DataAccessService \"%s\"", text.c_str());
  stripXml(text, item->dasItem);
  SDM_TRACE(4, "importItemFromDAS stripped reply from DataAccessService \"%s\"", text.c_str());
  return text;
}

void ServiceDataManager::stripXml(std::string& text, const std::string& tag)
{
  const std::size_t found = text.find(tag);
  if (found == std::string::npos)
  {
    text.clear();
    return;
  }
  // One character more, for the end of the opening tag. Nothing there at all is an error of the standard kind.
  const std::size_t begin = found + tag.size() + 1;
  text = text.substr(begin, text.find('<', begin) - begin);
}
