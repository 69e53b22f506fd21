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
#include "ThreadSafety.h"

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
/// except where they say that they take it or do without. To the compiler's checks the manager itself is what is held.
class SDM_EXPORT SDM_LOCKABLE("manager") ServiceDataManager : public ServiceDataManagerIfc
{
public:
  /// One pending assignment of a request.
  struct SetDataBlob;
  /// What became of one validation group.
  struct GroupDataBlob;

  ServiceDataManager();
  ~ServiceDataManager() override;
  ServiceDataManager(const ServiceDataManager&) = delete;
  ServiceDataManager& operator=(const ServiceDataManager&) = delete;

  /// Comes before everything else.
  void setup(SvcRTEContext* context, MgmtAgentIfc* agent, const std::string& name,
             ValidatorIfc* validator) override SDM_UNLOCKED_ON_PURPOSE;
  void initialise(const std::string& name) override;
  void initialiseWithoutSettingDefaultData(const std::string& name, const std::string& prefix) override;
  /// Comes before other operations, or between them.
  bool ready() override SDM_UNLOCKED_ON_PURPOSE;
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
  /// lock: not to be called while a map is loaded or cleared.
  bool isItemManaged(const std::string& name) const SDM_UNLOCKED_ON_PURPOSE;

private:
  class Hold;
  class Operation;
  class TriedValues;
  friend struct ServiceDataManagerTestAccess;
  friend void ::DASStartElementHandler(void*, const char*, const char**);
  friend void ::DASCharacterDataHandler(void*, const char*, int);
  friend void ::DASEndElementHandler(void*, const char*);

  /// For where the lock is held but the compiler cannot see it: in callbacks that run within an operation.
  void lockIsHeld() const SDM_SAYS_HELD(this)
  {
  }

  // Lifecycle. What a running operation may still point at is freed when the outermost operation ends.
  using Retired = std::unique_ptr<void, void (*)(void*)>;
  /// Owned by what is returned.
  template <typename Object>
  static Retired ofAnyType(Object* object);
  template <typename Object>
  void retire(std::unique_ptr<Object> object) SDM_NEEDS(this);
  /// Frees the object at once, or at the end of the outermost operation when one is running.
  void retire(Retired object) SDM_NEEDS(this);
  /// The callback objects in the order of their names, each once: one may be registered under several names.
  template <typename Callback>
  static std::vector<Retired> distinctCallbacks(const std::map<std::string, Callback*>& callbacks);
  void discardItemsFrom(std::size_t first) SDM_NEEDS(this);

  // Services: null while absent, and then asked for again. No lock of their own.
  template <typename Service>
  Service* serviceIfc(Service*& found, const char* interfaceName) SDM_NEEDS(this);
  DataAccessServiceIfc* dataAccessIfc() SDM_NEEDS(this);
  PhysicalInterfaceServiceIfc* physicalInterfaceIfc() SDM_NEEDS(this);
  LocalMgmtIfc* ocmsIfc() SDM_NEEDS(this);
  SecurityLogServiceIfc* securityLogIfc() SDM_NEEDS(this);

  // Callbacks by name, null when the name is not registered.
  ManagedItemGetter* findGetterFunc(const std::string& name) const SDM_NEEDS(this);
  ManagedItemSetter* findSetterFunc(const std::string& name) const SDM_NEEDS(this);

  // Item map.
  void setAllManagedData(const std::string& mapName) SDM_NEEDS(this);
  void loadItemMap(const std::string& mapName) SDM_NEEDS(this);
  void loadItemMapFile(sdm::ItemMapFile& file) SDM_NEEDS(this);
  void loadItemMapDictionary(const std::string& mapName) SDM_NEEDS(this);
  void addDataItem(const std::string& rootId, const std::string& dasSchema, const std::string& dasItem,
                   const std::string& dasIndexName, const std::string& dasIndexValue, const std::string& defaultValue,
                   const std::string& setterName, const std::string& getterName, const std::string& isGroupItem,
                   const std::string& dasEncrypted) SDM_NEEDS(this);
  void buildIndexes() SDM_NEEDS(this);
  /// The item published under a root id, or null; null as well before a map is loaded.
  ManagedDataItem* publishedItem(const std::string& rootId) const SDM_NEEDS(this);
  /// The same of the items of the local management store.
  ManagedDataItem* observedItem(const std::string& rootId) const SDM_NEEDS(this);

  // Cache initialisation.
  void initialiseCacheItems(const std::string& prefix) SDM_NEEDS(this);
  void initialiseCacheItem(ManagedDataItem& item, const std::string& prefix) SDM_NEEDS(this);
  void setSingleDataItem(ManagedDataItem* item, const std::string& value, std::string& error) SDM_NEEDS(this);
  void setSingleChangedDataItem(ManagedDataItem* item, const std::string& value, std::string& error) SDM_NEEDS(this);
  /// Calls the setter, which the item has to have.
  bool applyValue(ManagedDataItem& item, const std::string& value, std::string& error) SDM_NEEDS(this);

  // Replies of the database.
  [[nodiscard]] bool parseXMLDasReply(std::string& text, bool importMode, std::string* values) SDM_NEEDS(this);
  [[nodiscard]] bool runParser(const std::string& text) SDM_NEEDS(this);
  template <typename... Text>
  void handleElement(void (ServiceDataManager::*handler)(Text...), Text... text);
  void startElementHandler(const char* name, const char** atts) SDM_NEEDS(this);
  void characterDataHandler(const char* s, int len) SDM_NEEDS(this);
  void endElementHandler(const char* name) SDM_NEEDS(this);
  void collectColumn() SDM_NEEDS(this);
  void importColumn(const char* column) SDM_NEEDS(this);
  ManagedDataItem* importedItem(sdm::RunningParser& parser, const char* column) const SDM_NEEDS(this);
  [[nodiscard]] std::string decryptData(ManagedDataItem* item) SDM_NEEDS(this);

  // Import from the database.
  void importFromDAS() SDM_NEEDS(this);
  std::vector<std::string> importedSchemas() const SDM_NEEDS(this);
  [[nodiscard]] std::string readItemFromDAS(const std::string& rootId) SDM_NEEDS(this);
  void stripXml(std::string& text, const std::string& tag) SDM_NEEDS(this);

  // Local management store.
  void subscribeForObservations() SDM_NEEDS(this);
  /// Takes the lock.
  void importFromOCMS();
  std::vector<ManagedDataItem*> requestOCMSItems(ManageableData& request) SDM_NEEDS(this);
  void publishChanges() SDM_NEEDS(this);

  // Set path.
  std::vector<SetDataBlob> convertManageableDataToLocal(ManageableData& data) const SDM_NEEDS(this);
  void trySetData(std::vector<SetDataBlob>& blobs) const SDM_NEEDS(this);
  [[nodiscard]] bool setData(ManagedDataItem* item, const std::string& value, std::string& error) const SDM_NEEDS(this);
  void rejectRefusedItems(const std::vector<SetDataBlob>& blobs, ManageableData& data) const SDM_NEEDS(this);
  [[nodiscard]] bool isSetOperationSuccessful(bool dasResult, ManageableData& data) SDM_NEEDS(this);

  // Get path.
  [[nodiscard]] bool readItem(ManagedDataItem& item, const std::string& rootId, DataAccessServiceIfc& das,
                              std::string& value) SDM_NEEDS(this);
  [[nodiscard]] std::string readCell(ManagedDataItem& item, DataAccessServiceIfc& das) SDM_NEEDS(this);

  // Validation groups.
  void flagGroupForValidation(const std::string& group) SDM_NEEDS(this);
  void clearFlagGroupForValidation(const std::string& group) SDM_NEEDS(this);
  [[nodiscard]] bool validateGroupedData(std::string& reason, const std::string& group) const SDM_NEEDS(this);
  void clearGroupedData(const std::string& group) SDM_NEEDS(this);
  /// Tells the validator only; the caller clears the flags.
  void removeAllGroupsFromNeedingValidation() SDM_NEEDS(this);
  std::vector<GroupDataBlob> validateAllGroups() const SDM_NEEDS(this);
  void processItemForGroupData(ManagedDataItem* item) SDM_NEEDS(this);
  /// A copy, since the validator may call the manager.
  std::vector<std::string> flaggedGroups() const SDM_NEEDS(this);

  // Update requests, by schema.
  std::map<std::string, std::string> populateDasRequestMapWith(const std::vector<SetDataBlob>& blobs) SDM_NEEDS(this);
  void addDASItemEntry(std::map<std::string, std::string>& requests, ManagedDataItem* item, const std::string& value)
      SDM_NEEDS(this);
  void updateDasRequestSingleValidGroup(std::map<std::string, std::string>& requests, const std::string& group)
      SDM_NEEDS(this);
  bool sendDASRequests(std::map<std::string, std::string>& requests, DataAccessServiceIfc* das) SDM_NEEDS(this);
  [[nodiscard]] bool sendUpdateRequest(DataAccessServiceIfc& das, const std::string& request) SDM_NEEDS(this);
  void handOverSecurityLogRecords(bool failed) SDM_NEEDS(this);
  void handOverAfterFailedSend() noexcept SDM_NEEDS(this);

  // User data.
  void resetItem(ManagedDataItem& item, DataAccessServiceIfc& das, ManageableData& published) SDM_NEEDS(this);
  std::vector<SetDataBlob> convertDASUserItemToLocal() SDM_NEEDS(this);
  SetDataBlob readUserItem(const std::string& rootId) SDM_NEEDS(this);

  SvcRTEContext* context SDM_GUARDED_BY(this) = nullptr;
  MgmtAgentIfc* agent SDM_GUARDED_BY(this) = nullptr;
  std::string serviceName SDM_GUARDED_BY(this);

  DataAccessServiceIfc* dataAccessService SDM_GUARDED_BY(this) = nullptr;
  PhysicalInterfaceServiceIfc* physicalInterfaceService SDM_GUARDED_BY(this) = nullptr;
  LocalMgmtIfc* localMgmt SDM_GUARDED_BY(this) = nullptr;
  SecurityLogServiceIfc* securityLogService SDM_GUARDED_BY(this) = nullptr;

  std::unique_ptr<DASImportMap> dasImportMap SDM_GUARDED_BY(this) SDM_POINTEE_GUARDED_BY(this);
  std::unique_ptr<OCMSImportMap> ocmsImportMap SDM_GUARDED_BY(this) SDM_POINTEE_GUARDED_BY(this);
  std::unique_ptr<OCMSPublishMap> ocmsPublishMap SDM_GUARDED_BY(this) SDM_POINTEE_GUARDED_BY(this);
  std::unique_ptr<OCMSSubscribeMap> ocmsSubscribeMap SDM_GUARDED_BY(this) SDM_POINTEE_GUARDED_BY(this);

  sdm::DASReplyState ownReply SDM_GUARDED_BY(this);
  /// The state of the current parse; an operation that starts while a parse is running brings its own.
  sdm::DASReplyState* reply SDM_GUARDED_BY(this) = &ownReply;

  /// Owned; everything else only points at items.
  std::vector<ManagedDataItem*> items SDM_GUARDED_BY(this);
  /// The callback objects are owned.
  std::map<std::string, ManagedItemSetter*> setters SDM_GUARDED_BY(this);
  std::map<std::string, ManagedItemGetter*> getters SDM_GUARDED_BY(this);
  /// Items to publish, in the order they changed; null where an item is gone.
  std::vector<ManagedDataItem*> changedItems SDM_GUARDED_BY(this);
  /// Needs no lock.
  std::atomic<bool> startup{true};
  std::vector<std::string> userDataIds SDM_GUARDED_BY(this);
  std::map<std::string, bool> groupsNeedingValidation SDM_GUARDED_BY(this);
  ValidatorIfc* validator SDM_GUARDED_BY(this) = nullptr;
  std::vector<std::string> pendingSecurityLogRecords SDM_GUARDED_BY(this);
  /// How many of them, from the front, concern changes that may have been made: these outlive an exception.
  std::size_t recordsToKeep SDM_GUARDED_BY(this) = 0;

  /// Operations on the stack of the thread that holds the lock: more than one when callbacks called back.
  int runningOperations SDM_GUARDED_BY(this) = 0;
  std::vector<Retired> retired SDM_GUARDED_BY(this);

  Semaphore semaphore{1, 1, true};
  bool registered SDM_GUARDED_BY(this) = false;
  std::uint32_t interfaceCount SDM_GUARDED_BY(this) = 0;
};

#include "Blobs.h"
