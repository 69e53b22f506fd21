// The runtime context: where a service finds the other services of the device.
#pragma once

#include <string>

#include "Executable.h"
#include "PlatformExport.h"

/// The directory of services, handed to the manager through `setup` and borrowed for the manager's life.
class SDM_PLATFORM_EXPORT SvcRTEContext
{
public:
  virtual ~SvcRTEContext() = default;

  /// Finds a service by the name of its interface ("DataAccessServiceIfc", "PhysicalInterfaceServiceIfc",
  /// "LocalMgmtIfc" or "SecurityLogServiceIfc"; ASCII, case-sensitive).
  ///
  /// Null means that the service is not there now; the manager asks again the next time it needs it. An
  /// object of another interface counts as absent. A found service is remembered and not asked for again,
  /// so it has to stay valid. Called on the thread of the manager's caller, in most operations with the
  /// manager's lock held; it may block and may throw.
  virtual Executable* findService(const std::string& interfaceName) = 0;
};
