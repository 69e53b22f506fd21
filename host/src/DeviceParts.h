// What a device brings up one after the other, each as far as it can.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "host/DataAccessService.h"
#include "host/Device.h"
#include "host/Disk.h"
#include "host/LocalMgmtStore.h"
#include "host/SecurityLogService.h"

namespace host
{
/// What the operator has to know, each as a sentence.
class Notices
{
public:
  /// With what there is to know before there is a log.
  explicit Notices(std::vector<std::string> early);

  /// Logs it as well.
  void add(const std::string& text);

  /// Logs all there are: for those that were added before there was a log.
  void logAll() const;

  std::vector<std::string> texts;
};

/// Log and key belong to the process, so a second device would write into the first one's log and with its key. Throws
/// `Error` while there is another one.
class OnlyDevice
{
public:
  OnlyDevice();
  ~OnlyDevice();
  OnlyDevice(const OnlyDevice&) = delete;
  OnlyDevice& operator=(const OnlyDevice&) = delete;
};

/// The log in its file, or on standard error alone.
class OpenLog
{
public:
  OpenLog(const DeviceSettings& settings, Notices& notices);
  ~OpenLog();
  OpenLog(const OpenLog&) = delete;
  OpenLog& operator=(const OpenLog&) = delete;
};

/// The key; a damaged one is kept aside. On a disk that takes no changes there may be none.
class KeyInPlace
{
public:
  KeyInPlace(const std::filesystem::path& file, Notices& notices);
  ~KeyInPlace();
  KeyInPlace(const KeyInPlace&) = delete;
  KeyInPlace& operator=(const KeyInPlace&) = delete;
};

/// The service on its file, or on what the disk lets it have; a damaged file is kept aside. `disk` is borrowed.
std::unique_ptr<DataAccessService> openedDas(const std::filesystem::path& file, Disk& disk, Notices& notices);
std::unique_ptr<LocalMgmtStore> openedStore(const std::filesystem::path& file, Disk& disk, Notices& notices);
std::unique_ptr<SecurityLogService> openedSecurityLog(const std::filesystem::path& file, Notices& notices);
} // namespace host
