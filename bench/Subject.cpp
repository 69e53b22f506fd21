#include "Subject.h"

#include "Callbacks.h"

namespace bench
{

void AcceptingValidator::hold(const Workload& workload, const std::vector<std::string>& rootIds)
{
  std::map<std::string, std::string> groupOf;
  for (const Item& item : workload.items)
    groupOf[item.rootId] = item.group;
  groups.clear();
  nextGroups.clear();
  for (const std::string& rootId : rootIds)
  {
    groups[groupOf[rootId]].emplace_back(rootId, newValue);
    nextGroups[groupOf[rootId]].emplace_back(rootId, nextValue);
  }
}

void AcceptingValidator::turn()
{
  groups.swap(nextGroups);
}

std::vector<std::pair<std::string, std::string>> AcceptingValidator::getValidGroupItems(const std::string& group)
{
  return groups[group];
}

void AcceptingValidator::clearGroup(const std::string&)
{
}

bool AcceptingValidator::validateGroup(std::string&, const std::string&)
{
  return true;
}

void AcceptingValidator::reloadGroup(const std::string&)
{
}

Subject::Subject(const Shape& shape) : workload(shape), platform(makePlatform(workload))
{
  workload.writeFile();
}

Subject::~Subject()
{
  endManager();
}

void Subject::endManager()
{
  if (manager == nullptr)
    return;
  manager->deleteSetters();
  manager->deleteGetters();
  manager.reset();
}

void Subject::renewManager(bool withGetters)
{
  endManager();
  manager = std::make_unique<ServiceDataManager>();
  manager->setup(&platform->context(), nullptr, "bench", &validator);
  for (const std::string& name : setterNames())
    manager->addSetter({name.c_str(), makeSetter().release()});
  for (const std::string& name : withGetters ? getterNames() : std::vector<std::string>())
    manager->addGetter({name.c_str(), makeGetter().release()});
}

void Subject::startManager(bool withGetters)
{
  renewManager(withGetters);
  manager->initialise("CommsItemMap");
}

} // namespace bench
