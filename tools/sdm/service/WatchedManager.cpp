#include "WatchedManager.h"

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
    const bool accepted = setter->setValue(value, indexValue, error);
    watch.setterCalled(name, indexValue, value, accepted, error);
    return accepted;
  }

private:
  const std::string name;
  const std::shared_ptr<ManagedItemSetter> setter;
  CallWatch& watch;
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

void WatchedManager::initialise(const std::string& name)
{
  manager->initialise(name);
}

void WatchedManager::initialiseWithoutSettingDefaultData(const std::string& name, const std::string& prefix)
{
  manager->initialiseWithoutSettingDefaultData(name, prefix);
}

bool WatchedManager::ready()
{
  return manager->ready();
}

bool WatchedManager::setData(ManageableData& data)
{
  return manager->setData(data);
}

bool WatchedManager::getData(ManageableData& data)
{
  return manager->getData(data);
}

void WatchedManager::manageableDataChanged(ManageableData& data)
{
  manager->manageableDataChanged(data);
}

void WatchedManager::addGetter(const Getter& getter)
{
  manager->addGetter(getter);
  if (getter.name != nullptr)
    getters.emplace(getter.name, getter.getter);
}

// What the manager will not take stays the caller's, so it goes there as it is.
void WatchedManager::addSetter(const Setter& setter)
{
  if (setter.name == nullptr || setter.setter == nullptr || hasSetter(setter.name))
  {
    manager->addSetter(setter);
    return;
  }
  auto watched = std::make_unique<WatchedSetter>(setter.name, shared(setter.setter), watch);
  setters[setter.name] = watched.get();
  manager->addSetter({setter.name, watched.release()});
}

std::shared_ptr<ManagedItemSetter> WatchedManager::shared(ManagedItemSetter* setter)
{
  std::weak_ptr<ManagedItemSetter>& known = owned[setter];
  std::shared_ptr<ManagedItemSetter> owner = known.lock();
  if (!owner)
    owner.reset(setter);
  known = owner;
  return owner;
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
  manager->setStartup(startup);
}

void WatchedManager::clearAllManagedData()
{
  manager->clearAllManagedData();
}

bool WatchedManager::setDefaultUserData()
{
  return manager->setDefaultUserData();
}

void WatchedManager::importItemFromDAS(const std::string& rootId, std::string& value)
{
  manager->importItemFromDAS(rootId, value);
}

void WatchedManager::deleteGetters()
{
  getters.clear();
  manager->deleteGetters();
}

void WatchedManager::deleteSetters()
{
  setters.clear();
  manager->deleteSetters();
}

void WatchedManager::reloadUserData()
{
  manager->reloadUserData();
}

} // namespace cli
