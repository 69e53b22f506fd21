// A part that is damaged is kept aside and begun anew; one whose disk takes no changes does what it can without them.
#include "DeviceParts.h"

#include <atomic>
#include <system_error>
#include <utility>

#include "Log.h"
#include "Trouble.h"
#include "host/DeviceLog.h"
#include "host/KeyFile.h"
#include "host/keepAside.h"

namespace host
{
namespace
{
std::atomic<bool> deviceExists{false};

void logNotice(const std::string& text)
{
  SDM_HOST_LOG(2, "%s", text.c_str());
}

void useOrReplaceKey(const std::filesystem::path& file, Notices& notices)
{
  try
  {
    useKeyFile(file);
  }
  catch (const DamagedFile& damage)
  {
    const std::string aside = keepAside(file).string();
    notices.add(std::string(damage.what()) + "; it is kept as " + aside +
                " and a new one was made: put the right key back, or set the encrypted values again");
    useKeyFile(file);
  }
}

/// A database that was emptied is damaged as well when there are changes beside it that it does not know.
bool isEmptied(const std::filesystem::path& file)
{
  std::error_code unknown;
  return std::filesystem::is_regular_file(file, unknown) && std::filesystem::file_size(file, unknown) == 0;
}

template <typename Service>
std::unique_ptr<Service> openedOrBegunAnew(const std::filesystem::path& file, Disk& disk, Notices& notices)
{
  std::error_code unknown;
  const std::filesystem::path changes = file.string() + "-wal";
  try
  {
    if (isEmptied(file) && std::filesystem::exists(changes) && std::filesystem::file_size(changes, unknown) > 0)
      throw DamagedFile(file.string() + ": is empty, but there are changes to it");
    if (isEmptied(file))
      notices.add(file.string() + ": is empty, as after a power cut while it was made, and is begun anew: if it should "
                                  "hold values, put a backup in its place");
    return std::make_unique<Service>(file, Storage::file, "", &disk);
  }
  catch (const DamagedFile& damage)
  {
    const std::string aside = keepAside(file).string();
    notices.add(std::string(damage.what()) + "; it is kept as " + aside +
                " and an empty one takes its place: put a backup there, or set the values again");
    return std::make_unique<Service>(file, Storage::file, "", &disk);
  }
}

/// The service on its file, or on what the disk lets it have.
template <typename Service>
std::unique_ptr<Service> opened(const std::filesystem::path& file, Disk& disk, Notices& notices)
{
  try
  {
    return openedOrBegunAnew<Service>(file, disk, notices);
  }
  catch (const DiskTrouble& trouble)
  {
    notices.add(std::string(trouble.what()) + "; until then changes are refused");
    return std::make_unique<Service>(file, Storage::copy, trouble.what());
  }
}
} // namespace

Notices::Notices(std::vector<std::string> early) : texts(std::move(early))
{
}

void Notices::add(const std::string& text)
{
  texts.push_back(text);
  logNotice(text);
}

void Notices::logAll() const
{
  for (const std::string& text : texts)
    logNotice(text);
}

OnlyDevice::OnlyDevice()
{
  if (deviceExists.exchange(true))
    throw Error("there is another device in this process");
}

OnlyDevice::~OnlyDevice()
{
  deviceExists = false;
}

OpenLog::OpenLog(const DeviceSettings& settings, Notices& notices)
{
  setLogLevel(settings.logLevel);
  try
  {
    openLog({settings.folder / "log" / "device.log", settings.consoleLevel, 6});
    notices.logAll();
  }
  catch (const Error& error)
  {
    openLog({{}, 6, 6});
    notices.logAll();
    notices.add(std::string(error.what()) + "; until that is mended the log goes to standard error alone");
  }
}

OpenLog::~OpenLog()
{
  closeLog();
}

KeyInPlace::KeyInPlace(const std::filesystem::path& file, Notices& notices)
{
  try
  {
    useOrReplaceKey(file, notices);
  }
  catch (const DiskTrouble& trouble)
  {
    notices.add(std::string(trouble.what()) +
                "; until then encrypted values can be neither read nor written, and changes of them are refused");
  }
}

KeyInPlace::~KeyInPlace()
{
  forgetKey();
}

std::unique_ptr<DataAccessService> openedDas(const std::filesystem::path& file, Disk& disk, Notices& notices)
{
  return opened<DataAccessService>(file, disk, notices);
}

std::unique_ptr<LocalMgmtStore> openedStore(const std::filesystem::path& file, Disk& disk, Notices& notices)
{
  return opened<LocalMgmtStore>(file, disk, notices);
}

std::unique_ptr<SecurityLogService> openedSecurityLog(const std::filesystem::path& file, Notices& notices)
{
  try
  {
    return std::make_unique<SecurityLogService>(file);
  }
  catch (const DiskTrouble& trouble)
  {
    notices.add(std::string(trouble.what()) +
                "; until then changes that need a record of it are made without one, and whoever made them is told");
    return std::make_unique<SecurityLogService>(file, trouble);
  }
}
} // namespace host
