#include "RunningService.h"

#include <exception>
#include <utility>
#include <vector>

namespace cli
{
namespace
{

class WatchedValidator : public ValidatorIfc
{
public:
  WatchedValidator(ValidatorIfc& itsValidator, CallWatch& callWatch) : validator(itsValidator), watch(callWatch)
  {
  }

  std::vector<std::pair<std::string, std::string>> getValidGroupItems(const std::string& group) override
  {
    return validator.getValidGroupItems(group);
  }

  void clearGroup(const std::string& group) override
  {
    validator.clearGroup(group);
    watch.groupCleared(group);
  }

  bool validateGroup(std::string& reason, const std::string& group) override
  {
    const bool accepted = validator.validateGroup(reason, group);
    watch.groupJudged(group, accepted, reason);
    return accepted;
  }

  void reloadGroup(const std::string& group) override
  {
    validator.reloadGroup(group);
  }

private:
  ValidatorIfc& validator;
  CallWatch& watch;
};

std::unique_ptr<ValidatorIfc> watched(ValidatorIfc* validator, CallWatch& watch)
{
  return validator == nullptr ? nullptr : std::make_unique<WatchedValidator>(*validator, watch);
}

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
    catch (const std::exception&)
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

RunningService::RunningService(host::Service& itsService, SvcRTEContext& context, const ItemTable& items)
    : calls(items),
      groups(groupsOf(items)),
      judge(watched(itsService.validator(), calls)),
      dataManager(calls),
      observer(dataManager)
{
  dataManager.setup(&context, &observer, itsService.name(), judge.get());
  try
  {
    itsService.registerCallbacks(dataManager);
  }
  catch (...)
  {
    dataManager.deleteSetters();
    dataManager.deleteGetters();
    throw;
  }
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
  return judge.get();
}

void RunningService::forgetGroups()
{
  if (!judge)
    return;
  for (const std::string& group : groups)
    judge->clearGroup(group);
}

void RunningService::Agent::observedDataChanged(ManageableData& data)
{
  dataManager.manageableDataChanged(data);
}

} // namespace cli
