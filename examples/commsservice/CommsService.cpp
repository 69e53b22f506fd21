#include "CommsService.h"

#include <utility>

#include "SettingCallbacks.h"

namespace commsservice
{

class CommsService::Turn
{
public:
  explicit Turn(CommsService& service) : hold(service.turns), validator(service.validator)
  {
    validator.forgetAll();
  }
  ~Turn()
  {
    validator.forgetAll();
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

private:
  std::lock_guard<std::mutex> hold;
  GroupValidator& validator;
};

CommsService::CommsService(SvcRTEContext& context, std::unique_ptr<ServiceDataManagerIfc> manager)
    : live(settings()), validator(groupRules(), live, calls), dataManager(std::move(manager)), observer(*dataManager)
{
  dataManager->setup(&context, &observer, "CommsService", &validator);
  registerCallbacks(*dataManager, live, calls, validator);
}

CommsService::~CommsService()
{
  dataManager->deleteSetters();
  dataManager->deleteGetters();
}

bool CommsService::start(const std::string& itemMap)
{
  const Turn turn(*this);
  const bool known = dataManager->ready();
  dataManager->initialise(itemMap);
  return known;
}

void CommsService::restart(const std::string& itemMap)
{
  const Turn turn(*this);
  dataManager->setStartup(false);
  dataManager->initialise(itemMap);
}

bool CommsService::set(ManageableData& data)
{
  const Turn turn(*this);
  return dataManager->setData(data);
}

bool CommsService::get(ManageableData& data)
{
  return dataManager->getData(data);
}

bool CommsService::resetUserData()
{
  const Turn turn(*this);
  return dataManager->setDefaultUserData();
}

void CommsService::reloadUserData()
{
  const Turn turn(*this);
  dataManager->reloadUserData();
}

ServiceDataManagerIfc& CommsService::manager()
{
  return *dataManager;
}

MgmtAgentIfc& CommsService::agent()
{
  return observer;
}

std::string CommsService::liveValue(const std::string& setting, const std::string& row) const
{
  return live.get(setting, row);
}

CallReport CommsService::takeReport()
{
  return calls.take();
}

void CommsService::Agent::observedDataChanged(ManageableData& data)
{
  dataManager.manageableDataChanged(data);
}

} // namespace commsservice
