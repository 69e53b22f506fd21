// What the manager has to do with the local management store: subscription, import, change notification, publication.
#include <list>

#include "Model.h"

namespace judge
{

void Model::subscribe()
{
  trace(5, "subscribeForObservations");
  LocalMgmtIfc* const found = store();
  if (found == nullptr)
  {
    say(2, "subscribeForObservations Can't find OCMS");
    return;
  }
  std::list<std::string> rootIds;
  std::string joined;
  for (const auto& entry : local)
  {
    rootIds.push_back(entry.first);
    joined += entry.first + ",";
  }
  trace(5, "subscribeForObservations MgmtAgent: \"%s\" subscribing for: \"%s\"", serviceName.c_str(), joined.c_str());
  if (!found->subscribe(rootIds, agent))
    say(2, "subscribeForObservations Failed to subscribe for \"%s\"", joined.c_str());
}

namespace
{

/// The number behind the root id's last hyphen, when there is nothing but digits behind it.
std::string importIndex(const ManagedDataItem& item)
{
  const std::size_t last = item.rootId.find_last_not_of("0123456789");
  if (last == std::string::npos || item.rootId[last] != '-')
    return item.dasIndexValue;
  return item.rootId.substr(last + 1);
}

} // namespace

void Model::importFromStore()
{
  const Run run(*this);
  trace(5, "importFromOCMS");
  LocalMgmtIfc* const found = store();
  if (found == nullptr)
  {
    say(2, "importFromOCMS Can't find OCMS");
    return;
  }
  ManageableData data;
  std::vector<Item> wanted;
  for (const auto& entry : localImport)
  {
    trace(5, "importFromOCMS ocmsItemName = \"%s\"", entry.first.c_str());
    data.addRootId(entry.second->rootId, nullptr);
    wanted.push_back(entry.second);
  }
  if (!found->lookupData(data))
  {
    say(2, "importFromOCMS OCMS lookup failed");
    return;
  }
  trace(5, "importFromOCMS getData OK");
  for (const Item& item : wanted)
  {
    trace(5, "importFromOCMS ocmsTag = \"%s\"", item->rootId.c_str());
    std::string value;
    data.interogate(item->rootId, item->rootId, value);
    trace(5, "importFromOCMS got \"%s\" from ocms for tag '%s'", value.c_str(), item->rootId.c_str());
    std::string reason = "no setter available";
    item->setter->setValue(value, importIndex(*item), reason);
  }
}

void Model::manageableDataChanged(ManageableData& data)
{
  const Run run(*this);
  std::vector<std::string> rootIds;
  data.getRootIds(rootIds);
  // One text for all of them: the record writes each value over the one before.
  std::string value;
  for (const std::string& rootId : rootIds)
  {
    data.interogate(rootId, rootId, value);
    const auto found = local.find(rootId);
    if (found == local.end())
    {
      say(2, "manageableDataChanged unknown item \"%s\"", rootId.c_str());
      continue;
    }
    const Item item = found->second;
    trace(4, "manageableDataChanged \"%s\" = \"%s\"", rootId.c_str(), value.c_str());
    std::string reason = "no setter available";
    if (item->setter == nullptr)
      trace(3, "manageableDataChanged %s", reason.c_str());
    else
      item->setter->setValue(value, item->dasIndexValue, reason);
  }
}

void Model::publish()
{
  LocalMgmtIfc* const found = store();
  trace(5, "publishChanges %d changes", static_cast<int>(changed.size()));
  if (found == nullptr)
  {
    say(2, "publishChanges - no OCMS interface");
    return;
  }
  if (changed.empty())
    return;
  ManageableData data;
  bool anything = false;
  for (const auto& entry : std::vector<std::weak_ptr<ManagedDataItem>>(changed))
  {
    const Item item = entry.lock();
    if (item == nullptr || item->getter == nullptr)
      continue;
    data.populate(item->rootId, item->rootId, item->getter->getValue(item->dasIndexValue));
    anything = true;
  }
  if (anything)
    found->publishData(data);
  changed.clear();
}

} // namespace judge
