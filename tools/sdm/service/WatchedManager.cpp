#include "WatchedManager.h"

#include <optional>
#include <utility>

#include "MarkedManager.h"

namespace cli
{
namespace
{

class WatchedSetter : public ManagedItemSetter
{
public:
  WatchedSetter(std::string itsName, std::shared_ptr<ManagedItemSetter> itsSetter, CallWatch& callWatch)
      : name(std::move(itsName)), setter(std::move(itsSetter)), watch(callWatch)
  {
  }

  bool setValue(const std::string& value, const std::string& indexValue, std::string& error) override
  {
    const auto tell = [&](bool accepted, const std::optional<std::string>& thrown)
    {
      if (watch.listener() != nullptr)
        watch.listener()->setterEnded({name, indexValue, value, accepted, error, thrown});
    };
    const bool accepted = hearing([&] { return setter->setValue(value, indexValue, error); },
                                  [&](const std::string& thrown) { tell(false, thrown); });
    tell(accepted, std::nullopt);
    watch.setterCalled(name, indexValue, value, accepted, error);
    return accepted;
  }

private:
  const std::string name;
  const std::shared_ptr<ManagedItemSetter> setter;
  CallWatch& watch;
};

class WatchedGetter : public ManagedItemGetter
{
public:
  WatchedGetter(std::string itsName, std::shared_ptr<ManagedItemGetter> itsGetter, CallListener& itsListener)
      : name(std::move(itsName)), getter(std::move(itsGetter)), listener(itsListener)
  {
  }

  std::string getValue(const std::string& indexValue) override
  {
    std::string value = hearing([&] { return getter->getValue(indexValue); },
                                [&](const std::string& thrown) {
                                  listener.getterEnded({name, indexValue, "", thrown});
                                });
    listener.getterEnded({name, indexValue, value, std::nullopt});
    return value;
  }

private:
  const std::string name;
  const std::shared_ptr<ManagedItemGetter> getter;
  CallListener& listener;
};

template <typename Callback>
Callback* find(const std::map<std::string, Callback*>& callbacks, const std::string& name)
{
  const auto found = callbacks.find(name);
  return found == callbacks.end() ? nullptr : found->second;
}

template <typename Callback>
std::vector<std::string> namesOf(const std::map<std::string, Callback*>& callbacks)
{
  std::vector<std::string> names;
  names.reserve(callbacks.size());
  for (const auto& [name, callback] : callbacks)
    names.push_back(name);
  return names;
}

} // namespace

WatchedManager::WatchedManager(CallWatch& callWatch)
    : watch(callWatch), manager(watch::marked(makeServiceDataManager()))
{
}

bool WatchedManager::hasSetter(const std::string& name) const
{
  return setters.count(name) != 0;
}

bool WatchedManager::hasGetter(const std::string& name) const
{
  return getters.count(name) != 0;
}

std::vector<std::string> WatchedManager::setterNames() const
{
  return namesOf(setters);
}

std::vector<std::string> WatchedManager::getterNames() const
{
  return namesOf(getters);
}

ManagedItemSetter* WatchedManager::setter(const std::string& name) const
{
  return find(setters, name);
}

ManagedItemGetter* WatchedManager::getter(const std::string& name) const
{
  return find(getters, name);
}

void WatchedManager::setup(SvcRTEContext* context, MgmtAgentIfc* agent, const std::string& name,
                           ValidatorIfc* validator)
{
  manager->setup(context, agent, name, validator);
}

template <typename Work>
void WatchedManager::told(const OperationCall& call, const Work& work)
{
  CallListener* listener = watch.listener();
  OperationAnswer answer;
  if (listener != nullptr)
    listener->operationBegins(call);
  hearing([&] { work(answer); },
          [&](const std::string& thrown)
          {
            answer.thrown = thrown;
            if (listener != nullptr)
              listener->operationEnded(call, answer);
          });
  if (listener != nullptr)
    listener->operationEnded(call, answer);
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
  if (watch.listener() == nullptr || getter.name == nullptr || getter.getter == nullptr || hasGetter(getter.name))
  {
    manager->addGetter(getter);
    if (getter.name != nullptr)
      getters.emplace(getter.name, getter.getter);
    return;
  }
  auto watched = std::make_unique<WatchedGetter>(getter.name, sharedGetters.of(getter.getter), *watch.listener());
  getters[getter.name] = watched.get();
  manager->addGetter({getter.name, watched.release()});
}

// What the manager will not take stays the caller's, so it goes there as it is.
void WatchedManager::addSetter(const Setter& setter)
{
  if (setter.name == nullptr || setter.setter == nullptr || hasSetter(setter.name))
  {
    manager->addSetter(setter);
    return;
  }
  auto watched = std::make_unique<WatchedSetter>(setter.name, sharedSetters.of(setter.setter), watch);
  setters[setter.name] = watched.get();
  manager->addSetter({setter.name, watched.release()});
}

ManagedDataItem* WatchedManager::getItem(const std::string& name)
{
  return manager->getItem(name);
}

ManagedDataItem* WatchedManager::getPublishedItem(const std::string& name)
{
  return manager->getPublishedItem(name);
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
  getters.clear();
  manager->deleteGetters();
  sharedGetters.forget();
}

void WatchedManager::deleteSetters()
{
  setters.clear();
  manager->deleteSetters();
  sharedSetters.forget();
}

void WatchedManager::reloadUserData()
{
  told({"reloadUserData", {}}, [&](OperationAnswer&) { manager->reloadUserData(); });
}

} // namespace cli
