// Watching the local management store: subscribing, and applying what changed there.
#include <list>

#include <LocalMgmtIfc.h>
#include <ManageableData.h>

#include "Log.h"
#include "OCMSSubscribeMap.h"
#include "Operation.h"

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
  std::string joined;
  if (ocmsSubscribeMap != nullptr)
  {
    for (const auto& entry : ocmsSubscribeMap->getItemMap())
    {
      rootIds.push_back(entry.first);
      joined.append(entry.first).append(",");
    }
  }
  SDM_TRACE(5, "subscribeForObservations MgmtAgent: \"%s\" subscribing for: \"%s\"", serviceName.c_str(),
            joined.c_str());
  if (!store->subscribe(rootIds, agent))
    SDM_LOG(2, "subscribeForObservations Failed to subscribe for \"%s\"", joined.c_str());
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
    ManagedDataItem* item = ocmsSubscribeMap ? ocmsSubscribeMap->getItem(rootId) : nullptr;
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
