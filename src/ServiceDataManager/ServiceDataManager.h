// The manager: one object that holds the items of a service and carries out every operation on them. Its members
// are grouped by subject, and each subject has a source file of its own.
#pragma once

#include <atomic>
#include <cstdint>
#include <exception>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <CriticalSection.h>
#include <Semaphore.h>

#include "DASElementHandlers.h"
#include "DASReplyState.h"
#include "ServiceDataManagerIfc.h"

class DASImportMap;
class DataAccessServiceIfc;
class Executable;
class LocalMgmtIfc;
class OCMSImportMap;
class OCMSPublishMap;
class OCMSSubscribeMap;
class PhysicalInterfaceServiceIfc;
class SecurityLogServiceIfc;

namespace sdm
{
class ItemMapFile;
}

/// The interface operations are described by `ServiceDataManagerIfc`. The others need the manager's lock held,
/// except where they say that they take it or do without.
class SDM_EXPORT ServiceDataManager : public ServiceDataManagerIfc
{
public:
  /// One pending assignment of a request.
  struct SetDataBlob
  {
    SetDataBlob(std::string requestedRootId, std::string requestedValue, ManagedDataItem* publishedItem);
    virtual ~SetDataBlob();
    SetDataBlob(const SetDataBlob&);
    SetDataBlob(SetDataBlob&&) noexcept;
    SetDataBlob& operator=(const SetDataBlob&);
    SetDataBlob& operator=(SetDataBlob&&) noexcept;

    std::string rootId;
    std::string value;
    /// The setter accepted the value.
    bool validated = false;
    /// The setter's refusal or remark.
    std::string reason;
    /// Null when no item is published under the root id; not owned.
    ManagedDataItem* item;
  };

  /// What became of one validation group.
  struct GroupDataBlob
  {
    GroupDataBlob(std::string group, bool accepted, std::string refusal);
    virtual ~GroupDataBlob();
    GroupDataBlob(const GroupDataBlob&);
    GroupDataBlob(GroupDataBlob&&) noexcept;
    GroupDataBlob& operator=(const GroupDataBlob&);
    GroupDataBlob& operator=(GroupDataBlob&&) noexcept;

    std::string groupName;
    bool valid;
    /// Empty for a valid group.
    std::string reason;
  };

  ServiceDataManager();
  ~ServiceDataManager() override;
  ServiceDataManager(const ServiceDataManager&) = delete;
  ServiceDataManager& operator=(const ServiceDataManager&) = delete;

  void setup(SvcRTEContext* context, MgmtAgentIfc* agent, const std::string& name, ValidatorIfc* validator) override;
  void initialise(const std::string& name) override;
  void initialiseWithoutSettingDefaultData(const std::string& name, const std::string& prefix) override;
  bool ready() override;
  bool setData(ManageableData& data) override;
  bool getData(ManageableData& data) override;
  void manageableDataChanged(ManageableData& data) override;
  void addGetter(const Getter& getter) override;
  void addSetter(const Setter& setter) override;
  ManagedDataItem* getItem(const std::string& name) override;
  ManagedDataItem* getPublishedItem(const std::string& name) override;
  void setStartup(bool startup) override;
  void clearAllManagedData() override;
  bool setDefaultUserData() override;
  void importItemFromDAS(const std::string& rootId, std::string& value) override;
  void deleteGetters() override;
  void deleteSetters() override;
  void reloadUserData() override;

  /// Is there an item of this database column? The name is compared with `dasItem`, not with root ids. Takes no
  /// lock.
  bool isItemManaged(const std::string& name) const;

private:
  class Operation;
  class TriedValues;
  friend struct ServiceDataManagerTestAccess;
  friend void ::DASStartElementHandler(void*, const char*, const char**);
  friend void ::DASCharacterDataHandler(void*, const char*, int);
  friend void ::DASEndElementHandler(void*, const char*);

  // Lifecycle. What a running operation may still point at is freed when the outermost operation ends.
  using Retired = std::unique_ptr<void, void (*)(void*)>;
  template <typename Object>
  void retire(std::unique_ptr<Object> object);
  void discardItemsFrom(std::size_t first);

  // Services: null while absent, and then asked for again. No lock of their own.
  template <typename Service>
  Service* serviceIfc(Service*& found, const char* interfaceName);
  DataAccessServiceIfc* dataAccessIfc();
  PhysicalInterfaceServiceIfc* physicalInterfaceIfc();
  LocalMgmtIfc* ocmsIfc();
  SecurityLogServiceIfc* securityLogIfc();

  // Callbacks by name, null when the name is not registered.
  ManagedItemGetter* findGetterFunc(const std::string& name) const;
  ManagedItemSetter* findSetterFunc(const std::string& name) const;

  // Item map.
  void setAllManagedData(const std::string& mapName);
  void loadItemMap(const std::string& mapName);
  void loadItemMapFile(sdm::ItemMapFile& file);
  void loadItemMapDictionary(const std::string& mapName);
  void addDataItem(const std::string& rootId, const std::string& dasSchema, const std::string& dasItem,
                   const std::string& dasIndexName, const std::string& dasIndexValue, const std::string& defaultValue,
                   const std::string& setterName, const std::string& getterName, const std::string& isGroupItem,
                   const std::string& dasEncrypted);
  void buildIndexes();
  /// The item published under a root id, or null; null as well before a map is loaded.
  ManagedDataItem* publishedItem(const std::string& rootId) const;

  // Cache initialisation.
  void initialiseCacheItems(const std::string& prefix);
  void initialiseCacheItem(ManagedDataItem& item, const std::string& prefix);
  void setSingleDataItem(ManagedDataItem* item, const std::string& value, std::string& error);
  void setSingleChangedDataItem(ManagedDataItem* item, const std::string& value, std::string& error);
  /// Calls the setter, which the item has to have.
  bool applyValue(ManagedDataItem& item, const std::string& value, std::string& error);

  // Replies of the database.
  bool parseXMLDasReply(std::string& text, bool importMode, std::string* values);
  bool runParser(const std::string& text);
  template <typename Handler>
  void handleElement(Handler handler);
  void startElementHandler(const char* name, const char** atts);
  void characterDataHandler(const char* s, int len);
  void endElementHandler(const char* name);
  void collectColumn();
  void importColumn(const std::string& column);
  std::string decryptData(ManagedDataItem* item);

  // Import from the database.
  void importFromDAS();
  std::vector<std::string> importedSchemas() const;
  std::string readItemFromDAS(const std::string& rootId);
  void stripXml(std::string& text, std::string tag);

  // Local management store.
  void subscribeForObservations();
  /// Takes the lock.
  void importFromOCMS();
  std::vector<ManagedDataItem*> requestOCMSItems(ManageableData& request);
  void publishChanges();

  // Set path.
  std::vector<SetDataBlob> convertManageableDataToLocal(ManageableData& data) const;
  void trySetData(std::vector<SetDataBlob>& blobs) const;
  bool setData(ManagedDataItem* item, std::string value, std::string& error) const;
  void rejectRefusedItems(const std::vector<SetDataBlob>& blobs, ManageableData& data) const;
  bool isSetOperationSuccessful(bool dasResult, ManageableData& data);

  // Get path.
  bool readItem(ManagedDataItem& item, const std::string& rootId, DataAccessServiceIfc& das, std::string& value);
  std::string readCell(ManagedDataItem& item, DataAccessServiceIfc& das);

  // Validation groups.
  void flagGroupForValidation(const std::string& group);
  void clearFlagGroupForValidation(const std::string& group);
  bool validateGroupedData(std::string& reason, const std::string& group) const;
  void clearGroupedData(const std::string& group);
  /// Tells the validator only; the caller clears the flags.
  void removeAllGroupsFromNeedingValidation();
  std::vector<GroupDataBlob> validateAllGroups() const;
  void processItemForGroupData(ManagedDataItem* item);
  /// A copy, since the validator may call the manager.
  std::vector<std::string> flaggedGroups() const;

  // Update requests, by schema.
  std::map<std::string, std::string> populateDasRequestMapWith(const std::vector<SetDataBlob>& blobs);
  void addDASItemEntry(std::map<std::string, std::string>& requests, ManagedDataItem* item, const std::string& value);
  void updateDasRequestSingleValidGroup(std::map<std::string, std::string>& requests, const std::string& group);
  bool sendDASRequests(std::map<std::string, std::string>& requests, DataAccessServiceIfc* das);
  bool sendUpdateRequest(DataAccessServiceIfc& das, const std::string& request);
  void handOverSecurityLogRecords(bool failed);
  void handOverAfterFailedSend() noexcept;

  // User data.
  void resetItem(ManagedDataItem& item, DataAccessServiceIfc& das, ManageableData& published);
  std::vector<SetDataBlob> convertDASUserItemToLocal();
  SetDataBlob readUserItem(const std::string& rootId);

  SvcRTEContext* context = nullptr;
  MgmtAgentIfc* agent = nullptr;
  std::string serviceName;

  DataAccessServiceIfc* dataAccessService = nullptr;
  PhysicalInterfaceServiceIfc* physicalInterfaceService = nullptr;
  LocalMgmtIfc* localMgmt = nullptr;
  SecurityLogServiceIfc* securityLogService = nullptr;

  std::unique_ptr<DASImportMap> dasImportMap;
  std::unique_ptr<OCMSImportMap> ocmsImportMap;
  std::unique_ptr<OCMSPublishMap> ocmsPublishMap;
  std::unique_ptr<OCMSSubscribeMap> ocmsSubscribeMap;

  sdm::DASReplyState ownReply;
  /// The state of the current parse; an operation that starts while a parse is running brings its own.
  sdm::DASReplyState* reply = &ownReply;

  /// Owned; everything else only points at items.
  std::vector<ManagedDataItem*> items;
  /// The callback objects are owned.
  std::map<std::string, ManagedItemSetter*> setters;
  std::map<std::string, ManagedItemGetter*> getters;
  /// Items to publish, in the order they changed; null where an item is gone.
  std::vector<ManagedDataItem*> changedItems;
  std::atomic<bool> startup{true};
  std::vector<std::string> userDataIds;
  std::map<std::string, bool> groupsNeedingValidation;
  ValidatorIfc* validator = nullptr;
  std::vector<std::string> pendingSecurityLogRecords;
  /// How many of them, from the front, concern changes that may have been made: these outlive an exception.
  std::size_t recordsToKeep = 0;

  /// Operations on the stack of the thread that holds the lock: more than one when callbacks called back.
  int runningOperations = 0;
  std::vector<Retired> retired;

  Semaphore semaphore{1, 1, true};
  bool registered = false;
  std::uint32_t interfaceCount = 0;
};
