// The manager's inner operations and state, for tests of one step at a time.
#pragma once

#include "DASImportMap.h"
#include "OCMSImportMap.h"
#include "OCMSPublishMap.h"
#include "OCMSSubscribeMap.h"
#include "ServiceDataManager/ServiceDataManager.h"

struct ServiceDataManagerTestAccess
{
  ServiceDataManager& manager;

  // State.
  std::vector<ManagedDataItem*>& items = manager.items;
  std::vector<ManagedDataItem*>& changedItems = manager.changedItems;
  std::vector<std::string>& userDataIds = manager.userDataIds;
  std::map<std::string, bool>& groups = manager.groupsNeedingValidation;
  std::vector<std::string>& pendingRecords = manager.pendingSecurityLogRecords;
  sdm::DASReplyState& reply = manager.ownReply;
  std::unique_ptr<DASImportMap>& dasImportMap = manager.dasImportMap;
  std::unique_ptr<OCMSImportMap>& ocmsImportMap = manager.ocmsImportMap;
  std::unique_ptr<OCMSPublishMap>& ocmsPublishMap = manager.ocmsPublishMap;
  std::unique_ptr<OCMSSubscribeMap>& ocmsSubscribeMap = manager.ocmsSubscribeMap;
  std::uint32_t& interfaceCount = manager.interfaceCount;
  int& runningOperations = manager.runningOperations;

  explicit ServiceDataManagerTestAccess(ServiceDataManager& accessed) : manager(accessed)
  {
  }

  // Operations, each forwarded as it is.
  template <typename... Texts>
  void addDataItem(const Texts&... texts)
  {
    manager.addDataItem(texts...);
  }
  void setAllManagedData(const std::string& mapName)
  {
    manager.setAllManagedData(mapName);
  }
  void buildIndexes()
  {
    manager.buildIndexes();
  }
  ManagedItemGetter* findGetterFunc(const std::string& name)
  {
    return manager.findGetterFunc(name);
  }
  ManagedItemSetter* findSetterFunc(const std::string& name)
  {
    return manager.findSetterFunc(name);
  }
  DataAccessServiceIfc* dataAccessIfc()
  {
    return manager.dataAccessIfc();
  }
  PhysicalInterfaceServiceIfc* physicalInterfaceIfc()
  {
    return manager.physicalInterfaceIfc();
  }
  LocalMgmtIfc* ocmsIfc()
  {
    return manager.ocmsIfc();
  }
  void initialiseCacheItems(const std::string& prefix)
  {
    manager.initialiseCacheItems(prefix);
  }
  void setSingleDataItem(ManagedDataItem* item, const std::string& value, std::string& error)
  {
    manager.setSingleDataItem(item, value, error);
  }
  void setSingleChangedDataItem(ManagedDataItem* item, const std::string& value, std::string& error)
  {
    manager.setSingleChangedDataItem(item, value, error);
  }
  bool parseXMLDasReply(std::string text, bool importMode, std::string* values)
  {
    return manager.parseXMLDasReply(text, importMode, values);
  }
  std::string decryptData(ManagedDataItem* item)
  {
    return manager.decryptData(item);
  }
  void stripXml(std::string& text, const std::string& tag)
  {
    manager.stripXml(text, tag);
  }
  void importFromDAS()
  {
    manager.importFromDAS();
  }
  void subscribeForObservations()
  {
    manager.subscribeForObservations();
  }
  void importFromOCMS()
  {
    manager.importFromOCMS();
  }
  void publishChanges()
  {
    manager.publishChanges();
  }
  std::vector<ServiceDataManager::SetDataBlob> convertManageableDataToLocal(ManageableData& data)
  {
    return manager.convertManageableDataToLocal(data);
  }
  void trySetData(std::vector<ServiceDataManager::SetDataBlob>& blobs)
  {
    manager.trySetData(blobs);
  }
  bool setData(ManagedDataItem* item, std::string value, std::string& error)
  {
    return manager.setData(item, std::move(value), error);
  }
  bool isSetOperationSuccessful(bool dasResult, ManageableData& data)
  {
    return manager.isSetOperationSuccessful(dasResult, data);
  }
  void flagGroupForValidation(const std::string& group)
  {
    manager.flagGroupForValidation(group);
  }
  void clearFlagGroupForValidation(const std::string& group)
  {
    manager.clearFlagGroupForValidation(group);
  }
  bool validateGroupedData(std::string& reason, const std::string& group)
  {
    return manager.validateGroupedData(reason, group);
  }
  void clearGroupedData(const std::string& group)
  {
    manager.clearGroupedData(group);
  }
  void removeAllGroupsFromNeedingValidation()
  {
    manager.removeAllGroupsFromNeedingValidation();
  }
  std::vector<ServiceDataManager::GroupDataBlob> validateAllGroups()
  {
    return manager.validateAllGroups();
  }
  void processItemForGroupData(ManagedDataItem* item)
  {
    manager.processItemForGroupData(item);
  }
  std::map<std::string, std::string>
  populateDasRequestMapWith(const std::vector<ServiceDataManager::SetDataBlob>& blobs)
  {
    return manager.populateDasRequestMapWith(blobs);
  }
  void addDASItemEntry(std::map<std::string, std::string>& requests, ManagedDataItem* item, const std::string& value)
  {
    manager.addDASItemEntry(requests, item, value);
  }
  void updateDasRequestSingleValidGroup(std::map<std::string, std::string>& requests, const std::string& group)
  {
    manager.updateDasRequestSingleValidGroup(requests, group);
  }
  bool sendDASRequests(std::map<std::string, std::string>& requests, DataAccessServiceIfc* das)
  {
    return manager.sendDASRequests(requests, das);
  }
  std::vector<ServiceDataManager::SetDataBlob> convertDASUserItemToLocal()
  {
    return manager.convertDASUserItemToLocal();
  }
};
