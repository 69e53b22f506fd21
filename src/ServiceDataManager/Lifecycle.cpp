// A manager's beginning and end, and what it forgets in between.
#include <utility>

#include <LocalMgmtIfc.h>

#include "DASImportMap.h"
#include "Hold.h"
#include "Log.h"
#include "OCMSImportMap.h"
#include "OCMSPublishMap.h"
#include "OCMSSubscribeMap.h"
#include "Retire.h"
#include "ServiceDataManager.h"

std::unique_ptr<ServiceDataManagerIfc> makeServiceDataManager()
{
  return std::make_unique<ServiceDataManager>();
}

ServiceDataManager::ServiceDataManager() = default;

ServiceDataManager::~ServiceDataManager()
{
  const Hold hold(*this);
  try
  {
    SDM_TRACE(5, "deleting sdm");
  }
  catch (...)
  {
    // A log that throws must not keep the items from being freed.
  }
  ServiceDataManager::clearAllManagedData();
}

void ServiceDataManager::setup(SvcRTEContext* newContext, MgmtAgentIfc* newAgent, const std::string& name,
                               ValidatorIfc* newValidator)
{
  context = newContext;
  agent = newAgent;
  serviceName = name;
  validator = newValidator;
}

void ServiceDataManager::setStartup(bool newStartup)
{
  startup = newStartup;
}

bool ServiceDataManager::ready()
{
  if (registered || ocmsIfc() == nullptr)
    return false;
  return ocmsIfc()->registerService(serviceName, agent, 1);
}

void ServiceDataManager::clearAllManagedData()
{
  const Hold hold(*this);
  retire(std::move(dasImportMap));
  retire(std::move(ocmsImportMap));
  retire(std::move(ocmsPublishMap));
  retire(std::move(ocmsSubscribeMap));
  discardItemsFrom(0);
  // The list keeps its length, since a later publication tells how many changes there were, but no entry of
  // it may point at a freed item.
  for (ManagedDataItem*& changed : changedItems)
    changed = nullptr;
}

void ServiceDataManager::discardItemsFrom(std::size_t first)
{
  while (items.size() > first)
  {
    std::unique_ptr<ManagedDataItem> last(items.back());
    items.pop_back();
    retire(std::move(last));
  }
}

void ServiceDataManager::retire(Retired object)
{
  if (object != nullptr && runningOperations > 0)
    retired.push_back(std::move(object));
}
