// Reading the local management store's values at start-up.
#include <LocalMgmtIfc.h>
#include <ManageableData.h>

#include "Hold.h"
#include "Log.h"
#include "OCMSImportMap.h"
#include "ServiceDataManager.h"

namespace
{

/// A root id that ends in "-" and a decimal number addresses that instance of an indexed item.
std::string indexValueFor(const ManagedDataItem& item)
{
  const std::size_t last = item.rootId.find_last_not_of("0123456789");
  if (last == std::string::npos || item.rootId.at(last) != '-')
    return item.dasIndexValue;
  return item.rootId.substr(last + 1);
}

} // namespace

void ServiceDataManager::importFromOCMS()
{
  const Hold hold(*this);
  // A placeholder text; nothing reads it.
  [[maybe_unused]] const char* const unused = "unsused";

  SDM_TRACE(5, "importFromOCMS");
  LocalMgmtIfc* store = ocmsIfc();
  if (store == nullptr)
  {
    SDM_LOG(2, "importFromOCMS Can't find OCMS");
    return;
  }
  ManageableData request;
  const std::vector<ManagedDataItem*> requested = requestOCMSItems(request);
  if (!store->lookupData(request))
  {
    SDM_LOG(2, "importFromOCMS OCMS lookup failed");
    return;
  }
  SDM_TRACE(5, "importFromOCMS getData OK");
  for (ManagedDataItem* item : requested)
  {
    SDM_TRACE(5, "importFromOCMS ocmsTag = \"%s\"", item->rootId.c_str());
    std::string value;
    request.interogate(item->rootId, item->rootId, value);
    SDM_TRACE(5, "importFromOCMS got \"%s\" from ocms for tag '%s'", value.c_str(), item->rootId.c_str());
    std::string reason = "no setter available";
    if (item->setter != nullptr)
      item->setter->setValue(value, indexValueFor(*item), reason);
  }
}

std::vector<ManagedDataItem*> ServiceDataManager::requestOCMSItems(ManageableData& request)
{
  std::vector<ManagedDataItem*> requested;
  if (ocmsImportMap == nullptr)
    return requested;
  for (const auto& entry : ocmsImportMap->getItemMap())
  {
    SDM_TRACE(5, "importFromOCMS ocmsItemName = \"%s\"", entry.first.c_str());
    request.addRootId(entry.second->rootId, nullptr);
    requested.push_back(entry.second);
  }
  return requested;
}
