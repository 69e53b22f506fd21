// Lets a recorder hear the log.
#pragma once

#include "Recorder.h"
#include "host/DeviceLog.h"

namespace cli::transcript
{

/// For as long as it lives.
class RecordedLog
{
public:
  /// Borrows it.
  explicit RecordedLog(Recorder& recorder)
  {
    host::listenToLog([&recorder](const host::LogLine& line) { recorder.log(line); });
  }
  ~RecordedLog()
  {
    host::listenToLog({});
  }
  RecordedLog(const RecordedLog&) = delete;
  RecordedLog& operator=(const RecordedLog&) = delete;
};

} // namespace cli::transcript
