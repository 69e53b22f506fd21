// A plain manager, told in straight lines from what services and devices are promised: the judge of the real one. It
// shares no code with it, knows only the public headers and the platform, and cares for nothing but being read easily.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <CriticalSection.h>
#include <DataAccessServiceIfc.h>
#include <LocalMgmtIfc.h>
#include <ManageableData.h>
#include <PhysicalInterfaceServiceIfc.h>
#include <SecurityLogServiceIfc.h>
#include <Semaphore.h>
#include <SvcRTEContext.h>
#include <ValidatorIfc.h>

#include "ServiceDataManagerIfc.h"

namespace judge
{

using Item = std::shared_ptr<ManagedDataItem>;

/// What a map line or a dictionary entry says of one item.
struct ItemTexts
{
  std::string rootId, dasSchema, dasItem, dasIndexName, dasIndexValue, defaultValue, setter, getter, userData, group,
      encrypted;
};

class Model : public ServiceDataManagerIfc
{
public:
  ~Model() override;

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
  bool isItemManaged(const std::string& name) const;

private:
  class Run;

  struct SetRecord
  {
    std::string rootId;
    std::string value;
    bool validated = false;
    std::string reason;
    Item item;
  };

  struct GroupRecord
  {
    std::string group;
    bool valid = false;
    std::string reason;
  };

  struct Schema
  {
    std::string indexName;
    /// By column and index value.
    std::map<std::pair<std::string, std::string>, Item> items;
  };

  /// What one reply leaves to the next.
  struct Reply
  {
    std::string schema, indexColumn, indexValue, buffer, kind, collected;
    bool columnSeen = false;
    bool running = false;
  };

  using Requests = std::map<std::string, std::string>;

  /// Asked for again until it is there, then kept.
  template <typename Service>
  Service* service(Service*& found, const char* name)
  {
    if (found == nullptr && context != nullptr)
      found = dynamic_cast<Service*>(context->findService(name));
    return found;
  }
  DataAccessServiceIfc* dataAccess();
  LocalMgmtIfc* store();

  void loadMap(const std::string& name);
  void readMap(const std::string& name);
  void readFile(std::istream& file);
  void readDictionary(const std::string& name);
  void addItem(const ItemTexts& texts);
  void buildIndexes();

  void pushDefaults(const std::string& prefix);
  void importAllFromDas();
  void subscribe();
  void importFromStore();
  void publish();

  bool callSetter(const ManagedDataItem& item, const std::string& value, std::string& error);
  template <typename Callback>
  void discard(std::map<std::string, Callback*>& callbacks);
  void setSingle(const Item& item, const std::string& value);
  void setSingleChanged(const Item& item, const std::string& value);
  bool parse(const std::string& text, bool importing, std::string* values);
  void started(const std::string& name, const std::vector<std::string>& attributes);
  void ended(const std::string& name, bool importing);
  void importColumn(const std::string& column);
  std::string decrypted(const ManagedDataItem& item);

  void flag(const std::string& group);
  bool validateGroup(std::string& reason, const std::string& group);
  std::vector<GroupRecord> validateGroups();
  void forgetGroups();

  bool setAndSend(std::vector<SetRecord>& wanted, ManageableData& data);
  void reload(std::vector<SetRecord>& wanted);
  void countAsFlagged(const std::vector<SetRecord>& wanted);
  void trySet(std::vector<SetRecord>& wanted);
  Requests requestsFor(const std::vector<SetRecord>& records);
  void addCell(Requests& requests, const ManagedDataItem& item, const std::string& value);
  void addValidGroup(Requests& requests, const std::string& group);
  bool send(const Requests& requests, DataAccessServiceIfc* das);
  bool sendAll(const Requests& requests, DataAccessServiceIfc& das);
  void handOverRecords(bool failed);

  bool readOne(ManageableData& data, const std::string& rootId, DataAccessServiceIfc& das);
  std::string importOne(const std::string& rootId);
  void resetOne(const Item& item, DataAccessServiceIfc& das, ManageableData& published);

  SvcRTEContext* context = nullptr;
  MgmtAgentIfc* agent = nullptr;
  std::string serviceName;
  ValidatorIfc* validator = nullptr;
  DataAccessServiceIfc* dasFound = nullptr;
  PhysicalInterfaceServiceIfc* interfacesFound = nullptr;
  LocalMgmtIfc* storeFound = nullptr;
  SecurityLogServiceIfc* securityLogFound = nullptr;

  bool startup = true;
  std::vector<Item> items;
  std::map<std::string, ManagedItemSetter*> setters;
  std::map<std::string, ManagedItemGetter*> getters;
  std::map<std::string, Schema> dasImport;
  std::map<std::string, Item> localImport, published, local;
  /// Null where the item is gone.
  std::vector<std::weak_ptr<ManagedDataItem>> changed;
  std::vector<std::string> userDataIds;
  std::set<std::string> groups;
  /// The groups that an exception leaves flagged: those that the operation found.
  std::set<std::string> lastingGroups;
  std::vector<std::string> records;
  /// How many records an exception leaves.
  std::size_t lastingRecords = 0;
  Reply reply;

  int running = 0;
  /// What running operations may still use: freed when the outermost ends.
  std::vector<Item> goneItems;
  std::vector<std::shared_ptr<void>> goneCallbacks;

  Semaphore semaphore{1, 1, true};
};

/// One operation from its lock to its end. An inner one, called from a callback, has groups, records and, while a reply
/// is read, reply state of its own; what it leaves joins what the outer one had.
class Model::Run
{
public:
  explicit Run(Model& model);
  ~Run();
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

private:
  void giveBack();

  CriticalSection lock;
  Model& model;
  const int exceptions;
  std::set<std::string> outerGroups;
  std::set<std::string> outerLastingGroups;
  std::vector<std::string> outerRecords;
  std::size_t outerLasting;
  Reply outerReply;
};

/// A line whatever the gate says, and one that asks it.
void say(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));
void trace(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));

bool beginsWith(const std::string& text, const std::string& beginning);
std::string element(const std::string& name, const std::string& value);

} // namespace judge
