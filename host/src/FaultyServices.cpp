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
#include "Log.h"
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
  SDM_HOST_TRACE(metFaultLevel, "fault on demand: the local management store refuses a %s", operation);
  return true;
}

/// As a write to a full disk does.
void requireRoom(const std::string& name)
{
  if (!metFault(FaultPlace::disk))
    return;
  SDM_HOST_TRACE(metFaultLevel, "fault on demand: the disk is full");
  throw DiskTrouble(name + ": the disk is full, on demand");
}
} // namespace

FaultyContext::FaultyContext(::SvcRTEContext& itsReal) : real(itsReal)
{
}

Executable* FaultyContext::findService(const std::string& interfaceName)
{
  const bool das = interfaceName == "DataAccessServiceIfc";
  const bool canBeAbsent = das || interfaceName == "LocalMgmtIfc";
  if (!canBeAbsent || !metFault(das ? FaultPlace::das : FaultPlace::store, FaultMeeting::search))
    return real.findService(interfaceName);
  SDM_HOST_TRACE(metFaultLevel, "fault on demand: %s is not found",
                 das ? "the Data Access Service" : "the local management store");
  return nullptr;
}

FaultyDataAccessService::FaultyDataAccessService(::DataAccessServiceIfc& itsReal) : real(itsReal)
{
}

std::string FaultyDataAccessService::sendRequest(const char* request, std::size_t length)
{
  const std::optional<Fault> fault = metFault(FaultPlace::das);
  if (!fault)
    return real.sendRequest(request, length);
  if (fault->kind == FaultKind::slow)
  {
    SDM_HOST_TRACE(metFaultLevel, "fault on demand: the Data Access Service is slow");
    std::this_thread::sleep_for(fault->delay);
    return real.sendRequest(request, length);
  }
  SDM_HOST_TRACE(metFaultLevel, "fault on demand: the Data Access Service does not carry out a request");
  return falseReply(fault->kind, request, length);
}

FaultyLocalMgmt::FaultyLocalMgmt(::LocalMgmtIfc& itsReal) : real(itsReal)
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

FaultySecurityLogService::FaultySecurityLogService(::SecurityLogServiceIfc& itsReal, std::string itsName)
    : real(itsReal), name(std::move(itsName))
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
