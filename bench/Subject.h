// A manager in its surroundings, and a way to run its steps one at a time.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <ValidatorIfc.h>

#include "Platform.h"
#include "ServiceDataManager/ServiceDataManager.h"
#include "Workload.h"

/// The manager's inner steps.
struct ServiceDataManagerTestAccess
{
  static void load(ServiceDataManager& manager, const std::string& map)
  {
    manager.setAllManagedData(map);
  }
  static void initialiseCache(ServiceDataManager& manager)
  {
    manager.initialiseCacheItems("");
  }
  static void takeOver(ServiceDataManager& manager, ManageableData& request)
  {
    manager.convertManageableDataToLocal(request);
  }
  static void import(ServiceDataManager& manager)
  {
    manager.importFromDAS();
  }
  static void publish(ServiceDataManager& manager)
  {
    manager.publishChanges();
  }
  /// As if every item of the table had changed, or none.
  static void noteChanges(ServiceDataManager& manager, bool all)
  {
    manager.changedItems = all ? manager.items : std::vector<ManagedDataItem*>();
  }
};

namespace bench
{

/// Accepts every group and holds a new value for each item of it: another one each time it is turned.
class AcceptingValidator : public ValidatorIfc
{
public:
  void hold(const Workload& workload, const std::vector<std::string>& rootIds);
  void turn();
  std::vector<std::pair<std::string, std::string>> getValidGroupItems(const std::string& group) override;
  void clearGroup(const std::string& group) override;
  bool validateGroup(std::string& reason, const std::string& group) override;
  void reloadGroup(const std::string& group) override;

private:
  using Groups = std::map<std::string, std::vector<std::pair<std::string, std::string>>>;
  Groups groups;
  Groups nextGroups;
};

class Subject
{
public:
  /// The item map is written to the working directory.
  explicit Subject(const Shape& shape);
  ~Subject();
  Subject(const Subject&) = delete;
  Subject& operator=(const Subject&) = delete;

  /// A manager with all callbacks, or with no getters, before it loads anything.
  void renewManager(bool withGetters = true);

  /// The same after its start.
  void startManager(bool withGetters = true);

  const Workload workload;
  const std::unique_ptr<Platform> platform;
  AcceptingValidator validator;
  std::unique_ptr<ServiceDataManager> manager;

private:
  void endManager();
};

} // namespace bench
