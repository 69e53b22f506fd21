#include "host/Device.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <system_error>

#include "Files.h"
#include "host/DasCrypt.h"
#include "host/Error.h"
#include "host/LockWatch.h"
#include "host/PhysicalInterfaceServiceIfc.h"
#include "host/logAppUni.h"

namespace host
{
namespace
{
constexpr std::size_t rememberedExchanges = 100;

/// Its own entry and those of the folders above, as far as they can be opened: what the operator made in a place that
/// is closed to this process is for him to keep.
void makeFolderLast(const std::filesystem::path& folder)
{
  std::error_code ignored;
  std::filesystem::path path = std::filesystem::canonical(folder, ignored);
  for (; path.has_relative_path(); path = path.parent_path())
  {
    const FileDescriptor above(::open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (above.isOpen())
      ::fsync(above.number());
  }
}

std::filesystem::path existingFolder(const std::filesystem::path& folder)
{
  std::error_code failure;
  // Values of the local management store stand in the files as they are, so a new folder is its owner's alone.
  if (std::filesystem::create_directories(folder, failure))
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all, failure);
  // A power cut would take the folder with all that is in it.
  makeFolderLast(folder);
  if (!std::filesystem::is_directory(folder))
    throw Error(folder.string() +
                ": the device folder cannot be made: " + (failure ? failure.message() : "it is no folder"));
  return folder;
}

/// Keeps the folder for this process. The system takes the lock back when the process ends, in whatever way.
FileDescriptor lockedFolder(const std::filesystem::path& folder)
{
  const std::filesystem::path file = folder / "lock";
  FileDescriptor lock(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!lock.isOpen())
    throwSystemError(file, "cannot be opened", errno);
  if (::flock(lock.number(), LOCK_EX | LOCK_NB) == 0)
    return lock;
  if (errno == EWOULDBLOCK)
    throw Error(folder.string() + ": the device folder is in use already; one process at a time can run the device");
  throwSystemError(file, "cannot be locked", errno);
}

/// Log and key belong to the process, so a second device would write into the first one's log and with its key.
class OnlyDevice
{
public:
  OnlyDevice()
  {
    if (exists.exchange(true))
      throw Error("there is another device in this process");
  }
  ~OnlyDevice()
  {
    exists = false;
  }
  OnlyDevice(const OnlyDevice&) = delete;
  OnlyDevice& operator=(const OnlyDevice&) = delete;

private:
  static std::atomic<bool> exists;
};

std::atomic<bool> OnlyDevice::exists{false};

class OpenLog
{
public:
  explicit OpenLog(const DeviceSettings& settings)
  {
    openLog({settings.folder / "log" / "device.log", settings.consoleLevel, 6});
    setLogLevel(settings.logLevel);
  }
  ~OpenLog()
  {
    closeLog();
  }
  OpenLog(const OpenLog&) = delete;
  OpenLog& operator=(const OpenLog&) = delete;
};

class KeyInPlace
{
public:
  explicit KeyInPlace(const std::filesystem::path& file)
  {
    useKeyFile(file);
  }
  ~KeyInPlace()
  {
    forgetKey();
  }
  KeyInPlace(const KeyInPlace&) = delete;
  KeyInPlace& operator=(const KeyInPlace&) = delete;
};
} // namespace

/// The order of the members is the order of bringing up, and the reverse of taking down.
struct Device::Content
{
  explicit Content(const DeviceSettings& settings)
      : folder(existingFolder(settings.folder)),
        lock(lockedFolder(folder)),
        log(settings),
        key(folder / "das.key"),
        das(folder / "das.db"),
        traffic(das, rememberedExchanges),
        store(folder / "ocms.db"),
        securityLog(folder / "security.log"),
        interfaces(settings.interfaceCount)
  {
    setSlowWait(settings.slowWait);
    context.offer("DataAccessServiceIfc", &traffic);
    context.offer("LocalMgmtIfc", &store);
    context.offer("SecurityLogServiceIfc", &securityLog);
    context.offer("PhysicalInterfaceServiceIfc", &interfaces);
  }

  std::filesystem::path folder;
  FileDescriptor lock;
  OnlyDevice only;
  OpenLog log;
  KeyInPlace key;
  DataAccessService das;
  TrafficRecorder traffic;
  LocalMgmtStore store;
  SecurityLogService securityLog;
  PhysicalInterfaceService interfaces;
  RuntimeContext context;
};

Device::Device(const DeviceSettings& settings) : content(std::make_unique<Content>(settings))
{
}

Device::~Device() = default;

RuntimeContext& Device::context()
{
  return content->context;
}

DataAccessService& Device::das()
{
  return content->das;
}

TrafficRecorder& Device::traffic()
{
  return content->traffic;
}

LocalMgmtStore& Device::store()
{
  return content->store;
}

SecurityLogService& Device::securityLog()
{
  return content->securityLog;
}
} // namespace host
