// The owning service's callbacks, by the names that item maps use.
#include <set>
#include <string>
#include <utility>

#include "Hold.h"
#include "Log.h"
#include "Retire.h"
#include "ServiceDataManager.h"

namespace
{

template <typename Callback>
Callback* findCallback(const std::map<std::string, Callback*>& callbacks, const std::string& name)
{
  const auto found = callbacks.find(name);
  return found == callbacks.end() ? nullptr : found->second;
}

} // namespace

template <typename Callback>
std::vector<ServiceDataManager::Retired>
ServiceDataManager::distinctCallbacks(const std::map<std::string, Callback*>& callbacks)
{
  std::set<const void*> seen;
  std::vector<Retired> objects;
  for (const auto& [name, callback] : callbacks)
  {
    if (callback != nullptr && seen.insert(callback).second)
      objects.push_back(ofAnyType(callback));
  }
  return objects;
}

void ServiceDataManager::addGetter(const Getter& getter)
{
  const Hold hold(*this);
  if (getter.name == nullptr)
    SDM_LOG(2, "addGetter getter without a name");
  else
    getters.emplace(getter.name, getter.getter);
}

void ServiceDataManager::addSetter(const Setter& setter)
{
  const Hold hold(*this);
  if (setter.name == nullptr)
    SDM_LOG(2, "addSetter setter without a name");
  else
    setters.emplace(setter.name, setter.setter);
}

ManagedItemGetter* ServiceDataManager::findGetterFunc(const std::string& name) const
{
  return findCallback(getters, name);
}

ManagedItemSetter* ServiceDataManager::findSetterFunc(const std::string& name) const
{
  return findCallback(setters, name);
}

void ServiceDataManager::deleteGetters()
{
  const Hold hold(*this);
  // Taken out first, so that a callback's destructor finds the registry empty and usable.
  for (Retired& getter : distinctCallbacks(std::exchange(getters, {})))
    retire(std::move(getter));
}

void ServiceDataManager::deleteSetters()
{
  const Hold hold(*this);
  for (Retired& setter : distinctCallbacks(std::exchange(setters, {})))
    retire(std::move(setter));
}
