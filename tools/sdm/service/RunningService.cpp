#include "RunningService.h"

#include <exception>
#include <functional>
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
    ValidatorCall call = {"getValidGroupItems", group, {}, "", {}, {}};
    call.items = hearing([&] { return validator.getValidGroupItems(group); }, threw(call));
    tell(call);
    return *call.items;
  }

  void clearGroup(const std::string& group) override
  {
    ValidatorCall call = {"clearGroup", group, {}, "", {}, {}};
    hearing([&] { validator.clearGroup(group); }, threw(call));
    tell(call);
    watch.groupCleared(group);
  }

  bool validateGroup(std::string& reason, const std::string& group) override
  {
    ValidatorCall call = {"validateGroup", group, {}, "", {}, {}};
    const bool accepted = hearing([&] { return validator.validateGroup(reason, group); }, threw(call));
    call.accepted = accepted;
    // Reasons of an acceptance mean nothing, and may be those of an earlier group.
    call.reason = accepted ? "" : reason;
    tell(call);
    watch.groupJudged(group, accepted, reason);
    return accepted;
  }

  void reloadGroup(const std::string& group) override
  {
    ValidatorCall call = {"reloadGroup", group, {}, "", {}, {}};
    hearing([&] { validator.reloadGroup(group); }, threw(call));
    tell(call);
  }

private:
  void tell(const ValidatorCall& call) const
  {
    if (watch.listener() != nullptr)
      watch.listener()->validatorEnded(call);
  }

  /// For what `call` throws.
  std::function<void(const std::string&)> threw(ValidatorCall& call) const
  {
    return [this, &call](const std::string& thrown)
    {
      call.thrown = thrown;
      tell(call);
    };
  }

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

RunningService::RunningService(host::Service& itsService, SvcRTEContext& context, const ItemTable& items,
                               CallListener* listener)
    : calls(items, listener),
      groups(groupsOf(items)),
      itsJudge(itsService.validator()),
      judge(watched(itsJudge, calls)),
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
  if (listener != nullptr)
    listener->registered(dataManager.setterNames(), dataManager.getterNames());
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
  if (itsJudge == nullptr)
    return;
  // No listener hears of it: it is no call of the manager.
  for (const std::string& group : groups)
  {
    itsJudge->clearGroup(group);
    calls.groupCleared(group);
  }
}

void RunningService::Agent::observedDataChanged(ManageableData& data)
{
  dataManager.manageableDataChanged(data);
}

} // namespace cli
