// The manager as a service gets to see it: passes everything on, and puts a watch around the callbacks on their way in.
#pragma once

#include <ServiceDataManagerIfc.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "CallWatch.h"
#include "SharedCallbacks.h"

namespace cli
{

class WatchedManager : public ServiceDataManagerIfc
{
public:
  /// Borrows the watch.
  explicit WatchedManager(CallWatch& callWatch);

  /// Whether a callback was registered under this name.
  bool hasSetter(const std::string& name) const;
  bool hasGetter(const std::string& name) const;

  /// The names of all that was registered.
  std::vector<std::string> setterNames() const;
  std::vector<std::string> getterNames() const;

  /// What was registered, or null; the manager's.
  ManagedItemSetter* setter(const std::string& name) const;
  ManagedItemGetter* getter(const std::string& name) const;

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

private:
  /// Does the work of an operation, with the listener told of both ends.
  template <typename Work>
  void told(const OperationCall& call, const Work& work);

  CallWatch& watch;
  std::map<std::string, ManagedItemSetter*> setters;
  std::map<std::string, ManagedItemGetter*> getters;
  watch::SharedCallbacks<ManagedItemSetter> sharedSetters;
  watch::SharedCallbacks<ManagedItemGetter> sharedGetters;
  std::unique_ptr<ServiceDataManagerIfc> manager;
};

} // namespace cli
