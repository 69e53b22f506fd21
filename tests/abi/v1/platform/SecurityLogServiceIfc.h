// The device's security log: the lasting record of who-changed-what for sensitive configuration.
#pragma once

#include <ctime>
#include <string>

#include "Executable.h"
#include "PlatformExport.h"

/// Takes one record per sensitive change, after the operation's update requests were sent.
class SDM_PLATFORM_EXPORT SecurityLogServiceIfc : public Executable
{
public:
  ~SecurityLogServiceIfc() override = default;

  /// Writes one event.
  ///
  /// `when` is in seconds since the epoch, the same for all records of one operation. The four numbers are
  /// the service's own codes; the manager always passes 4, 1, 5 and 3. `failed` tells that the
  /// operation's last update request was not taken, or that it had none and hands over the records of an earlier one.
  /// `record` is UTF-8 text with values escaped as XML, or masked when they are stored encrypted; it may hold any
  /// character of a value, line ends included. The last two texts are passed empty. Called with the manager's lock
  /// held; it may block and may throw.
  virtual void logSecurityEvent(time_t when, int facility, int severity, int eventType, int eventClass, bool failed,
                                std::string record, std::string user, std::string origin) = 0;
};
