// The service that owns the manager: its settings, its validator and its side of the management agent.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include <MgmtAgentIfc.h>
#include <ServiceDataManagerIfc.h>

#include "CallLog.h"
#include "GroupValidator.h"
#include "LiveValues.h"
#include "Settings.h"

namespace commsservice
{

/// Every operation runs to its end on the caller's thread and may come from any thread; those that hand values
/// to the validator run one at a time, so that one request's pending values are not another's. What a platform
/// service throws reaches the caller.
class CommsService
{
public:
  /// Registers all callbacks and the agent; borrows the context and whatever it finds through it. `manager` is never
  /// null; give another than the library's own to watch what passes through.
  explicit CommsService(SvcRTEContext& context,
                        std::unique_ptr<ServiceDataManagerIfc> manager = makeServiceDataManager());

  /// The local store must not report changes any more.
  ~CommsService();
  CommsService(const CommsService&) = delete;
  CommsService& operator=(const CommsService&) = delete;

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
  ServiceDataManagerIfc& manager();

  /// Who reports changes of the local store.
  MgmtAgentIfc& agent();

  /// The value the service works with; secrets included, so not for display.
  std::string liveValue(const std::string& setting, const std::string& row = "") const;

  /// What the callbacks did since the last call.
  CallReport takeReport();

private:
  /// Passes changes of the local store on. It takes no part in the order of operations: local settings have no
  /// groups, and the manager's own lock is enough.
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

  LiveValues live;
  CallLog calls;
  GroupValidator validator;
  std::unique_ptr<ServiceDataManagerIfc> dataManager;
  Agent observer;
  std::mutex turns;
};

} // namespace commsservice
