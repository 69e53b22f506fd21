// Each operation is told when it begins and when it ends, and is passed on.
#include "WatchedManager.h"

#include <utility>

namespace cli
{

template <typename Work>
void WatchedManager::told(const OperationCall& call, const Work& work)
{
  OperationAnswer answer;
  tellOf(
      answer.thrown, [&] { listener.operationBegins(call); }, [&] { work(answer); },
      [&] { listener.operationEnded(call, answer); });
}

template <typename Work>
void WatchedManager::keepHouse(const char* operation, const Work& work)
{
  told({operation, {}, nullptr, true}, [&](OperationAnswer&) { work(); });
}

WatchedManager::WatchedManager(CallListener& itsListener, std::unique_ptr<ServiceDataManagerIfc> itsManager)
    : listener(itsListener), manager(std::move(itsManager))
{
}

WatchedManager::~WatchedManager()
{
  keepHouse("the manager's end", [&] { manager.reset(); });
}

bool WatchedManager::hasSetter(const std::string& name) const
{
  return setters.find(name) != nullptr;
}

bool WatchedManager::hasGetter(const std::string& name) const
{
  return getters.find(name) != nullptr;
}

std::vector<std::string> WatchedManager::setterNames() const
{
  return setters.known();
}

std::vector<std::string> WatchedManager::getterNames() const
{
  return getters.known();
}

ManagedItemSetter* WatchedManager::setter(const std::string& name) const
{
  return setters.find(name);
}

ManagedItemGetter* WatchedManager::getter(const std::string& name) const
{
  return getters.find(name);
}

ValidatorIfc* WatchedManager::validator() const
{
  return judge.get();
}

void WatchedManager::setup(SvcRTEContext* context, MgmtAgentIfc* agent, const std::string& name,
                           ValidatorIfc* itsValidator)
{
  auto watched = itsValidator == nullptr ? nullptr : std::make_unique<WatchedValidator>(*itsValidator, listener);
  manager->setup(context, agent, name, watched.get());
  judge = std::move(watched);
}

void WatchedManager::initialise(const std::string& name)
{
  told({"initialise", {{"name", name}}}, [&](OperationAnswer&) { manager->initialise(name); });
}

void WatchedManager::initialiseWithoutSettingDefaultData(const std::string& name, const std::string& prefix)
{
  told({"initialiseWithoutSettingDefaultData", {{"name", name}, {"prefix", prefix}}},
       [&](OperationAnswer&) { manager->initialiseWithoutSettingDefaultData(name, prefix); });
}

bool WatchedManager::ready()
{
  bool known = false;
  told({"ready", {}}, [&](OperationAnswer& answer) { answer.success = known = manager->ready(); });
  return known;
}

bool WatchedManager::setData(ManageableData& data)
{
  bool success = false;
  told({"setData", {}, &data}, [&](OperationAnswer& answer) { answer.success = success = manager->setData(data); });
  return success;
}

bool WatchedManager::getData(ManageableData& data)
{
  bool success = false;
  told({"getData", {}, &data}, [&](OperationAnswer& answer) { answer.success = success = manager->getData(data); });
  return success;
}

void WatchedManager::manageableDataChanged(ManageableData& data)
{
  told({"manageableDataChanged", {}, &data}, [&](OperationAnswer&) { manager->manageableDataChanged(data); });
}

void WatchedManager::addGetter(const Getter& getter)
{
  keepHouse("addGetter",
            [&]
            {
              auto watched = getters.watched(getter.name, getter.getter, listener);
              manager->addGetter({getter.name, watched != nullptr ? watched.release() : getter.getter});
            });
}

void WatchedManager::addSetter(const Setter& setter)
{
  keepHouse("addSetter",
            [&]
            {
              auto watched = setters.watched(setter.name, setter.setter, listener);
              manager->addSetter({setter.name, watched != nullptr ? watched.release() : setter.setter});
            });
}

ManagedDataItem* WatchedManager::getItem(const std::string& name)
{
  ManagedDataItem* item = nullptr;
  keepHouse("getItem", [&] { item = manager->getItem(name); });
  return item;
}

ManagedDataItem* WatchedManager::getPublishedItem(const std::string& name)
{
  ManagedDataItem* item = nullptr;
  keepHouse("getPublishedItem", [&] { item = manager->getPublishedItem(name); });
  return item;
}

void WatchedManager::setStartup(bool startup)
{
  told({"setStartup", {{"startup", startup ? "true" : "false"}}},
       [&](OperationAnswer&) { manager->setStartup(startup); });
}

void WatchedManager::clearAllManagedData()
{
  told({"clearAllManagedData", {}}, [&](OperationAnswer&) { manager->clearAllManagedData(); });
}

bool WatchedManager::setDefaultUserData()
{
  bool success = false;
  told({"setDefaultUserData", {}},
       [&](OperationAnswer& answer) { answer.success = success = manager->setDefaultUserData(); });
  return success;
}

void WatchedManager::importItemFromDAS(const std::string& rootId, std::string& value)
{
  told({"importItemFromDAS", {{"item", rootId}}},
       [&](OperationAnswer& answer)
       {
         manager->importItemFromDAS(rootId, value);
         answer.value = value;
       });
}

void WatchedManager::deleteGetters()
{
  keepHouse("deleteGetters",
            [&]
            {
              manager->deleteGetters();
              getters.forget();
            });
}

void WatchedManager::deleteSetters()
{
  keepHouse("deleteSetters",
            [&]
            {
              manager->deleteSetters();
              setters.forget();
            });
}

void WatchedManager::reloadUserData()
{
  told({"reloadUserData", {}}, [&](OperationAnswer&) { manager->reloadUserData(); });
}

} // namespace cli
