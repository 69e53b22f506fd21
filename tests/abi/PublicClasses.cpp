// Every class of the contract, whole: the library itself gets by with the names of some, its ABI description does not.
#include <ClientUtils.h>
#include <CriticalSection.h>
#include <DASUtilsStrings.h>
#include <DasCrypt.h>
#include <DataAccessServiceIfc.h>
#include <DxlDictionary.h>
#include <Executable.h>
#include <LocalMgmtIfc.h>
#include <ManageableData.h>
#include <MgmtAgentIfc.h>
#include <PhysicalInterfaceServiceIfc.h>
#include <RejectReasonsStrings.h>
#include <SecurityLogServiceIfc.h>
#include <Semaphore.h>
#include <SvcRTEContext.h>
#include <ValidatorIfc.h>
#include <logAppUni.h>
