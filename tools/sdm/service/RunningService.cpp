// Operations that hand values to the validator take turns.
#include "RunningService.h"

#include "ServiceCall.h"

namespace cli
{
namespace
{

std::set<std::string> groupsOf(const ItemTable& items)
{
  std::set<std::string> groups;
  for (const MapItem& item : items.items())
  {
    if (!item.group.empty())
      groups.insert(item.group);
  }
  return groups;
}

} // namespace

class RunningService::Turn
{
public:
  explicit Turn(RunningService& running) : hold(running.turns), service(running)
  {
    service.forgetGroups();
  }
  ~Turn()
  {
    try
    {
      service.forgetGroups();
    }
    catch (...)
    {
      // The next turn begins with the same, and tells then.
    }
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

private:
  std::lock_guard<std::mutex> hold;
  RunningService& service;
};

RunningService::RunningService(loadable::Service& itsService, SvcRTEContext& context, const ItemTable& items,
                               CallListener* listener)
    : calls(items),
      groups(groupsOf(items)),
      judge(calling("the service's validator", [&] { return itsService.validator(); })),
      dataManager(listeners),
      observer(dataManager)
{
  listeners.add(marks);
  listeners.add(calls);
  if (listener != nullptr)
    listeners.add(*listener);
  dataManager.setup(&context, &observer, itsService.name(), judge);
  try
  {
    calling("the service's registerCallbacks", [&] { itsService.registerCallbacks(dataManager); });
  }
  catch (...)
  {
    dataManager.deleteSetters();
    dataManager.deleteGetters();
    throw;
  }
  listeners.registered(dataManager.setterNames(), dataManager.getterNames());
}

RunningService::~RunningService()
{
  dataManager.deleteSetters();
  dataManager.deleteGetters();
}

bool RunningService::start(const std::string& itemMap)
{
  const Turn turn(*this);
  const bool known = dataManager.ready();
  dataManager.initialise(itemMap);
  return known;
}

void RunningService::restart(const std::string& itemMap)
{
  const Turn turn(*this);
  dataManager.setStartup(false);
  dataManager.initialise(itemMap);
}

bool RunningService::set(ManageableData& data)
{
  const Turn turn(*this);
  return dataManager.setData(data);
}

bool RunningService::get(ManageableData& data)
{
  return dataManager.getData(data);
}

bool RunningService::resetUserData()
{
  const Turn turn(*this);
  return dataManager.setDefaultUserData();
}

void RunningService::reloadUserData()
{
  const Turn turn(*this);
  dataManager.reloadUserData();
}

WatchedManager& RunningService::manager()
{
  return dataManager;
}

MgmtAgentIfc& RunningService::agent()
{
  return observer;
}

const CallWatch& RunningService::watch() const
{
  return calls;
}

CallReport RunningService::takeReport()
{
  return calls.take();
}

ValidatorIfc* RunningService::validator()
{
  return dataManager.validator();
}

void RunningService::forgetGroups()
{
  if (judge == nullptr)
    return;
  // No listener hears of it: it is no call of the manager.
  for (const std::string& group : groups)
  {
    calling("validator's clearGroup of group " + group, [&] { judge->clearGroup(group); });
    calls.groupCleared(group);
  }
}

void RunningService::Agent::observedDataChanged(ManageableData& data)
{
  dataManager.manageableDataChanged(data);
}

} // namespace cli
