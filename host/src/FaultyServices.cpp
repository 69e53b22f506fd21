// Each wrapper asks the fault layer first and hands the call on when nothing is to fail.
#include "host/FaultyServices.h"

#include <ManageableData.h>

#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "DasReply.h"
#include "DasRequest.h"
#include "FaultLayer.h"
#include "Refusal.h"
#include "Trouble.h"

namespace host
{
namespace
{
DasRequest readAsFarAsItGoes(const char* text, std::size_t length)
{
  DasRequest request;
  try
  {
    readDasRequest(text, length, request);
  }
  catch (const Refusal&)
  {
    // The real service would refuse it; here the answer is nonsense anyway.
  }
  return request;
}

std::string falseReply(FaultKind kind, const char* text, std::size_t length)
{
  if (kind == FaultKind::empty)
    return "";
  const DasRequest request = readAsFarAsItGoes(text, length);
  if (kind == FaultKind::refused)
    return dasErrorReply(request.schema, "refused on demand");
  const bool reading = request.kind == DasRequest::Kind::read;
  // Cut before anything in it could be taken for a value.
  const std::string ofRightKind = reading ? DasReadReply(request.schema).finished() : dasUpdateReply(request.schema);
  if (kind == FaultKind::malformed)
    return ofRightKind.substr(0, ofRightKind.rfind('<'));
  return reading ? dasUpdateReply(request.schema) : DasReadReply(request.schema).finished();
}

/// `operation` is for the log.
bool storeRefuses(const char* operation)
{
  if (!metFault(FaultPlace::store))
    return false;
  logMetFault(__LINE__, (std::string("the local management store refuses a ") + operation).c_str());
  return true;
}

/// As a write to a full disk does.
void requireRoom(const std::string& name)
{
  if (!metFault(FaultPlace::disk))
    return;
  logMetFault(__LINE__, "the disk is full");
  throw DiskTrouble(name + ": the disk is full, on demand");
}
} // namespace

FaultyContext::FaultyContext(::SvcRTEContext& realContext) : real(realContext)
{
}

Executable* FaultyContext::findService(const std::string& interfaceName)
{
  const bool das = interfaceName == "DataAccessServiceIfc";
  const bool canBeAbsent = das || interfaceName == "LocalMgmtIfc";
  if (!canBeAbsent || !metFault(das ? FaultPlace::das : FaultPlace::store, FaultMeeting::search))
    return real.findService(interfaceName);
  logMetFault(__LINE__, das ? "the Data Access Service is not found" : "the local management store is not found");
  return nullptr;
}

FaultyDataAccessService::FaultyDataAccessService(::DataAccessServiceIfc& realService) : real(realService)
{
}

std::string FaultyDataAccessService::sendRequest(const char* request, std::size_t length)
{
  const std::optional<Fault> fault = metFault(FaultPlace::das);
  if (!fault)
    return real.sendRequest(request, length);
  if (fault->kind == FaultKind::slow)
  {
    logMetFault(__LINE__, "the Data Access Service is slow");
    std::this_thread::sleep_for(fault->delay);
    return real.sendRequest(request, length);
  }
  logMetFault(__LINE__, "the Data Access Service does not carry out a request");
  return falseReply(fault->kind, request, length);
}

FaultyLocalMgmt::FaultyLocalMgmt(::LocalMgmtIfc& realStore) : real(realStore)
{
}

bool FaultyLocalMgmt::registerService(const std::string& serviceName, MgmtAgentIfc* agent, int version)
{
  return !storeRefuses("registration") && real.registerService(serviceName, agent, version);
}

bool FaultyLocalMgmt::lookupData(ManageableData& data)
{
  return !storeRefuses("lookup") && real.lookupData(data);
}

bool FaultyLocalMgmt::subscribe(std::list<std::string>& rootIds, MgmtAgentIfc* agent)
{
  return !storeRefuses("subscription") && real.subscribe(rootIds, agent);
}

bool FaultyLocalMgmt::publishData(ManageableData& data)
{
  return !storeRefuses("publication") && real.publishData(data);
}

bool FaultyLocalMgmt::checkData(ManageableData& data, void* context)
{
  if (!faultsAreSet())
    return real.checkData(data, context);
  std::vector<std::string> rootIds;
  data.getRootIds(rootIds);
  if (rootIds.empty() || !storeRefuses("check for locks"))
    return real.checkData(data, context);
  data.setRootId(rootIds.front(), this);
  return false;
}

FaultySecurityLogService::FaultySecurityLogService(::SecurityLogServiceIfc& realLog, std::string nameInErrors)
    : real(realLog), name(std::move(nameInErrors))
{
}

void FaultySecurityLogService::logSecurityEvent(time_t when, int facility, int severity, int eventType, int eventClass,
                                                bool failed, std::string record, std::string user, std::string origin)
{
  requireRoom(name);
  real.logSecurityEvent(when, facility, severity, eventType, eventClass, failed, std::move(record), std::move(user),
                        std::move(origin));
}

void FaultyDisk::beforeChange(const std::filesystem::path& file)
{
  requireRoom(file.string());
}
} // namespace host
