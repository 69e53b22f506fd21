// The device's services with a recorder in front of them.
#pragma once

#include <memory>

#include "host/Device.h"
#include "record/Recorder.h"

namespace cli::record
{

/// Offers them in place of the device's own for as long as it lives, and lets the recorder hear the log. No manager
/// that found them may outlive it.
class RecordedPlatform
{
public:
  /// Borrows both.
  RecordedPlatform(host::Device& device, Recorder& recorder);
  ~RecordedPlatform();
  RecordedPlatform(const RecordedPlatform&) = delete;
  RecordedPlatform& operator=(const RecordedPlatform&) = delete;

private:
  host::Device& device;
  std::unique_ptr<DataAccessServiceIfc> das;
  std::unique_ptr<LocalMgmtIfc> store;
  std::unique_ptr<SecurityLogServiceIfc> securityLog;
};

} // namespace cli::record
