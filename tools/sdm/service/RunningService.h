// A service with its manager: makes both, connects them, and passes requests on.
#pragma once

#include <MgmtAgentIfc.h>
#include <ValidatorIfc.h>

#include <mutex>
#include <set>
#include <string>

#include "CallListeners.h"
#include "CallWatch.h"
#include "MarkListener.h"
#include "WatchedManager.h"
#include "loadable/Service.h"

class SvcRTEContext;

namespace cli
{

/// Every operation runs to its end on the caller's thread and may come from any thread; those that hand values to the
/// validator run one at a time, so that one request's pending values are not another's. What callbacks and platform
/// services throw reaches the caller.
class RunningService
{
public:
  /// Registers the callbacks; borrows everything. Nobody listens when there is no listener.
  RunningService(loadable::Service& itsService, SvcRTEContext& context, const ItemTable& items,
                 CallListener* listener = nullptr);

  /// The local store must not report changes any more.
  ~RunningService();
  RunningService(const RunningService&) = delete;
  RunningService& operator=(const RunningService&) = delete;

  /// The first start, with the item map of this name. Returns whether the local store knows the service.
  bool start(const std::string& itemMap);

  /// A later start with the map that is loaded: defaults, the database's values, publication.
  void restart(const std::string& itemMap);

  /// The answers of the manager's operations of like names.
  bool set(ManageableData& data);
  bool get(ManageableData& data);
  bool resetUserData();
  void reloadUserData();

  /// For what needs no order among the operations above.
  WatchedManager& manager();

  /// Who reports changes of the local store.
  MgmtAgentIfc& agent();

  const CallWatch& watch() const;

  /// What the callbacks did since the last call.
  CallReport takeReport();

  /// The service's validator, watched; null when it has none.
  ValidatorIfc* validator();

private:
  /// Passes changes of the local store on. It takes no part in the order of operations: the store may report a change
  /// while an operation waits for the store.
  class Agent : public MgmtAgentIfc
  {
  public:
    explicit Agent(ServiceDataManagerIfc& itsManager) : dataManager(itsManager)
    {
    }
    void observedDataChanged(ManageableData& data) override;

  private:
    ServiceDataManagerIfc& dataManager;
  };

  /// One operation's turn: begins with an empty validator and leaves one.
  class Turn;

  void forgetGroups();

  MarkListener marks;
  CallWatch calls;
  CallListeners listeners;
  std::set<std::string> groups;
  /// The service's own; null when it has none.
  ValidatorIfc* judge;
  WatchedManager dataManager;
  Agent observer;
  std::mutex turns;
};

} // namespace cli
