// Where the device's log goes.
#pragma once

#include <logAppUni.h>

#include <filesystem>
#include <functional>
#include <string>

#include "host/HostExport.h"

namespace host
{
/// A line reaches a sink when its level is at most the sink's. Both sinks come after the gate: they never open it.
struct SDM_HOST_EXPORT LogSettings
{
  /// Rotates at 5 MiB, two older files are kept as NAME.1.EXT and NAME.2.EXT; empty for no file.
  std::filesystem::path file;
  /// For standard error; 0 keeps it silent.
  int consoleLevel = 2;
  /// For the file; 6 is all there is.
  int fileLevel = 6;
};

/// Opens the log, in place of an open one. Until then every line goes to standard error. Throws `Error` naming the file
/// when it cannot be written; the log stays as it was. This and all that follow may be called from any thread.
SDM_HOST_EXPORT void openLog(const LogSettings& settings);

/// Closes the file; lines go to standard error again.
SDM_HOST_EXPORT void closeLog();

/// Opens the gate of `loggingOnAppUni` up to this level for all modules without a level of their own; 2 at first.
SDM_HOST_EXPORT void setLogLevel(int level);

/// Opens that gate up to this level for one module alone.
SDM_HOST_EXPORT void setLogLevel(const std::string& module, int level);

/// Takes the level of its own away from a module.
SDM_HOST_EXPORT void clearLogLevel(const std::string& module);

/// How far the gate is open for modules without a level of their own.
SDM_HOST_EXPORT int logLevel();

/// A line without its time, as it was handed to `logAppUni`; one line feed at its end is not part of it.
struct SDM_HOST_EXPORT LogLine
{
  std::string module; ///< whose line it is: "ServiceDataManager" for the library
  int level = 0;      ///< as the contract of `logAppUni` names them
  std::string text;   ///< in the bytes of its caller, UTF-8 as far as the values are
};

/// From now on `listener` hears every line that is written, in place of an earlier listener; an empty one ends that.
/// It is called on the thread that logs, often with the manager's lock held, for one line at a time; it must not log.
/// On return no call of the earlier listener is under way.
SDM_HOST_EXPORT void listenToLog(std::function<void(const LogLine&)> listener);
} // namespace host
