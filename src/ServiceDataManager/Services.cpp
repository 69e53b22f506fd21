// The platform's services, looked up when they are first needed.
#include <DataAccessServiceIfc.h>
#include <LocalMgmtIfc.h>
#include <PhysicalInterfaceServiceIfc.h>
#include <SecurityLogServiceIfc.h>
#include <SvcRTEContext.h>

#include "ServiceDataManager.h"

template <typename Service>
Service* ServiceDataManager::serviceIfc(Service*& found, const char* interfaceName)
{
  if (found == nullptr && context != nullptr)
    found = dynamic_cast<Service*>(context->findService(interfaceName));
  return found;
}

DataAccessServiceIfc* ServiceDataManager::dataAccessIfc()
{
  return serviceIfc(dataAccessService, "DataAccessServiceIfc");
}

PhysicalInterfaceServiceIfc* ServiceDataManager::physicalInterfaceIfc()
{
  return serviceIfc(physicalInterfaceService, "PhysicalInterfaceServiceIfc");
}

LocalMgmtIfc* ServiceDataManager::ocmsIfc()
{
  return serviceIfc(localMgmt, "LocalMgmtIfc");
}

SecurityLogServiceIfc* ServiceDataManager::securityLogIfc()
{
  return serviceIfc(securityLogService, "SecurityLogServiceIfc");
}
