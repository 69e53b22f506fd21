// Watching the local management store: subscribing, and applying what changed there.
#include <list>

#include <LocalMgmtIfc.h>
#include <ManageableData.h>

#include "Log.h"
#include "OCMSSubscribeMap.h"
#include "Operation.h"

namespace
{

std::string joinedRootIds(OCMSSubscribeMap* map)
{
  std::string joined;
  if (map == nullptr)
    return joined;
  for (const auto& entry : map->getItemMap())
    joined.append(entry.first).append(",");
  return joined;
}

} // namespace

void ServiceDataManager::subscribeForObservations()
{
  SDM_TRACE(5, "subscribeForObservations");
  LocalMgmtIfc* store = ocmsIfc();
  if (store == nullptr)
  {
    SDM_LOG(2, "subscribeForObservations Can't find OCMS");
    return;
  }
  std::list<std::string> rootIds;
  if (ocmsSubscribeMap != nullptr)
  {
    for (const auto& entry : ocmsSubscribeMap->getItemMap())
      rootIds.push_back(entry.first);
  }
  // Still there when the store is done, whatever it called: the running operation keeps it.
  OCMSSubscribeMap* observed = ocmsSubscribeMap.get();
  SDM_TRACE(5, "subscribeForObservations MgmtAgent: \"%s\" subscribing for: \"%s\"", serviceName.c_str(),
            joinedRootIds(observed).c_str());
  if (!store->subscribe(rootIds, agent))
    SDM_LOG(2, "subscribeForObservations Failed to subscribe for \"%s\"", joinedRootIds(observed).c_str());
}

void ServiceDataManager::manageableDataChanged(ManageableData& data)
{
  Operation operation(*this);
  std::vector<std::string> rootIds;
  data.getRootIds(rootIds);
  std::string value;
  for (const std::string& rootId : rootIds)
  {
    data.interogate(rootId, rootId, value);
    ManagedDataItem* item = observedItem(rootId);
    if (item == nullptr)
    {
      SDM_LOG(2, "manageableDataChanged unknown item \"%s\"", rootId.c_str());
      continue;
    }
    SDM_TRACE(4, "manageableDataChanged \"%s\" = \"%s\"", rootId.c_str(), value.c_str());
    // The configured index, never a suffix of the root id: that rule belongs to the import at start-up.
    std::string reason = "no setter available";
    if (item->setter != nullptr)
      item->setter->setValue(value, item->dasIndexValue, reason);
    else
      SDM_TRACE(3, "manageableDataChanged %s", reason.c_str());
  }
}
