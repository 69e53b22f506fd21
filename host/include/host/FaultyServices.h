// Services that fail on demand, each around a real one of any make.
//
// What fails and how is told with host/Faults.h. Without faults every call goes on to the real service, and what that
// throws reaches the caller. `DasCrypt` has static operations and so no wrapper: the host's own meets the faults of
// `encryption`. Operations may be called from any thread as far as those of the real service may.
#pragma once

#include <DataAccessServiceIfc.h>
#include <LocalMgmtIfc.h>
#include <SecurityLogServiceIfc.h>
#include <SvcRTEContext.h>

#include <cstddef>
#include <list>
#include <string>

#include "host/Disk.h"
#include "host/HostExport.h"

namespace host
{
/// Meets the faults "absent" of `das` and `store`.
class SDM_HOST_EXPORT FaultyContext : public ::SvcRTEContext
{
public:
  /// Borrows `real`.
  explicit FaultyContext(::SvcRTEContext& real);

  /// Null while the service of this name is absent on demand.
  Executable* findService(const std::string& interfaceName) override;

private:
  ::SvcRTEContext& real;
};

/// Meets the other faults of `das`. An update or read that is not answered by the real service never reaches it.
class SDM_HOST_EXPORT FaultyDataAccessService : public ::DataAccessServiceIfc
{
public:
  /// Borrows `real`.
  explicit FaultyDataAccessService(::DataAccessServiceIfc& real);

  /// Waits first while the service is slow on demand.
  std::string sendRequest(const char* request, std::size_t length) override;

private:
  ::DataAccessServiceIfc& real;
};

/// Meets the fault "refuses" of `store`: every operation answers false, and the real store is not asked.
class SDM_HOST_EXPORT FaultyLocalMgmt : public ::LocalMgmtIfc
{
public:
  /// Borrows `real`.
  explicit FaultyLocalMgmt(::LocalMgmtIfc& real);

  bool registerService(const std::string& serviceName, MgmtAgentIfc* agent, int version) override;
  bool lookupData(ManageableData& data) override;
  bool subscribe(std::list<std::string>& rootIds, MgmtAgentIfc* agent) override;
  bool publishData(ManageableData& data) override;

  /// A refusal names the record's first item; of a record without items the real store is asked.
  bool checkData(ManageableData& data, void* context) override;

private:
  ::LocalMgmtIfc& real;
};

/// Meets the fault "full" of `disk`.
class SDM_HOST_EXPORT FaultySecurityLogService : public ::SecurityLogServiceIfc
{
public:
  /// Borrows `real`; `name`, such as its file, begins the error.
  FaultySecurityLogService(::SecurityLogServiceIfc& real, std::string name);

  /// Throws `Error` while the disk is full on demand.
  void logSecurityEvent(time_t when, int facility, int severity, int eventType, int eventClass, bool failed,
                        std::string record, std::string user, std::string origin) override;

private:
  ::SecurityLogServiceIfc& real;
  const std::string name;
};

/// Meets the fault "full" of `disk`, for the databases beneath the host's services.
class SDM_HOST_EXPORT FaultyDisk : public Disk
{
public:
  void beforeChange(const std::filesystem::path& file) override;
};
} // namespace host
