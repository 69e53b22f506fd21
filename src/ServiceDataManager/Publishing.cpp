// Telling the local management store what changed.
#include <LocalMgmtIfc.h>
#include <ManageableData.h>

#include "Log.h"
#include "ServiceDataManager.h"

void ServiceDataManager::publishChanges()
{
  LocalMgmtIfc* store = ocmsIfc();
  ManageableData record;
  SDM_TRACE(5, "publishChanges %d changes", static_cast<int>(changedItems.size()));
  if (store == nullptr)
  {
    SDM_LOG(2, "publishChanges - no OCMS interface");
    return;
  }
  if (changedItems.empty())
    return;

  bool anything = false;
  // A copy, since a getter may call the manager.
  const std::vector<ManagedDataItem*> changed = changedItems;
  for (const ManagedDataItem* item : changed)
  {
    if (item == nullptr || item->getter == nullptr)
      continue;
    record.populate(item->rootId, item->rootId, item->getter->getValue(item->dasIndexValue));
    anything = true;
  }
  if (anything)
    store->publishData(record);
  changedItems.clear();
}
