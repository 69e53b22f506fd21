// Wraps a manager. Tells a listener of every operation and of every call of a callback.
#pragma once

#include <ServiceDataManagerIfc.h>

#include <memory>
#include <string>
#include <vector>

#include "CallListener.h"
#include "WatchedCallbacks.h"

namespace cli
{

/// All promises of the interface stay: what is registered belongs to the manager, and an object with several names is
/// deleted once. `getItem` tells of items whose callbacks are the wrappers.
class WatchedManager : public ServiceDataManagerIfc
{
public:
  /// Borrows the listener, which has to outlive this.
  explicit WatchedManager(CallListener& itsListener,
                          std::unique_ptr<ServiceDataManagerIfc> itsManager = makeServiceDataManager());
  ~WatchedManager() override;

  /// Whether a callback was registered under this name.
  bool hasSetter(const std::string& name) const;
  bool hasGetter(const std::string& name) const;

  /// The names of all callbacks that were registered.
  std::vector<std::string> setterNames() const;
  std::vector<std::string> getterNames() const;

  /// What was registered, or null; the manager's. A call of it is told like one of the manager's own.
  ManagedItemSetter* setter(const std::string& name) const;
  ManagedItemGetter* getter(const std::string& name) const;

  /// The validator that `setup` got; null when there was none.
  ValidatorIfc* validator() const;

  void setup(SvcRTEContext* context, MgmtAgentIfc* agent, const std::string& name, ValidatorIfc* itsValidator) override;
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
  template <typename Work>
  void keepHouse(const char* operation, const Work& work);

  CallListener& listener;
  std::unique_ptr<WatchedValidator> judge;
  CallbackRegistry<ManagedItemSetter, WatchedSetter> setters;
  CallbackRegistry<ManagedItemGetter, WatchedGetter> getters;
  std::unique_ptr<ServiceDataManagerIfc> manager;
};

} // namespace cli
