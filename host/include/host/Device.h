// A whole host device in one folder, brought up in order.
#pragma once

#include <LocalMgmtIfc.h>
#include <SecurityLogServiceIfc.h>
#include <SvcRTEContext.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "host/DataAccessService.h"
#include "host/HostExport.h"
#include "host/LocalMgmtStore.h"
#include "host/SecurityLogService.h"
#include "host/Traffic.h"

namespace host
{
/// What a device is made of.
struct SDM_HOST_EXPORT DeviceSettings
{
  /// Made, parents included, when it is not there.
  std::filesystem::path folder;
  /// What `PhysicalInterfaceServiceIfc` answers.
  std::uint32_t interfaceCount = 1;
  /// The gate of the log.
  int logLevel = 2;
  /// What of it reaches standard error as well; 0 for nothing.
  int consoleLevel = 2;
  /// See `setSlowWait`.
  std::chrono::milliseconds slowWait{1000};
};

/// The services of the device in `folder`: das.db, ocms.db, das.key, security.log and log/device.log, each made when it
/// is not there. The folder belongs to one process at a time; log and key are the process's, so there is one device at
/// a time in a process.
///
/// A device comes up as far as it can: what is damaged is kept aside and begun anew, and on a disk that takes no
/// changes it works with what can be read and refuses updates. `notices` tells.
class SDM_HOST_EXPORT Device
{
public:
  /// Throws `Error` naming the file or folder and the reason, such as a folder that another process uses, a key that is
  /// open to others, or a database of another kind.
  explicit Device(const DeviceSettings& settings);

  /// Takes the services down; nobody may use them any more.
  ~Device();
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  /// Offers the four services under the names of their interfaces, each behind its wrapper of FaultyServices.h; the
  /// Data Access Service with `traffic` in front as well.
  ::SvcRTEContext& context();

  /// What the context offers as the local management store: `store` behind its wrapper, which meets faults.
  ::LocalMgmtIfc& offeredStore();
  /// What the context offers as the security log: `securityLog` behind its wrapper, which meets faults.
  ::SecurityLogServiceIfc& offeredSecurityLog();

  /// The database itself, without `traffic` and faults in front. This and the next three are the device's and live as
  /// long as it; they may be asked for from any thread.
  DataAccessService& das();
  /// What the service and the database said to each other, the last 100 exchanges, of 4 MiB at most.
  TrafficRecorder& traffic();
  /// The local management store.
  LocalMgmtStore& store();
  /// The security log.
  SecurityLogService& securityLog();

  /// What is not as it should be, each as a sentence for the operator that names the file, says why and what to do.
  std::vector<std::string> notices();

private:
  struct Content;
  std::unique_ptr<Content> content;
};
} // namespace host
