// Hands log lines to a recorder.
#pragma once

#include "Recorder.h"
#include "host/DeviceLog.h"

namespace cli::transcript
{

/// Does so during its life.
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
