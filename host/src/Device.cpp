#include "host/Device.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <system_error>

#include "Files.h"
#include "LockedFolder.h"
#include "Trouble.h"
#include "host/DeviceLog.h"
#include "host/FaultyServices.h"
#include "host/KeyFile.h"
#include "host/LockWatch.h"
#include "host/PhysicalInterfaceService.h"
#include "host/PrivateFiles.h"
#include "host/RuntimeContext.h"
#include "host/keepAside.h"

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
  // Values of the local management store stand in the files as they are, so a new folder is its owner's alone.
  const std::error_code failure = makePrivateFolders(folder);
  // A power cut would take the folder with all that is in it.
  makeFolderLast(folder);
  if (!std::filesystem::is_directory(folder))
    throw Error(folder.string() +
                ": the device folder cannot be made: " + (failure ? failure.message() : "it is no folder"));
  return folder;
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

/// Before anything of the device is opened, its log included.
std::vector<std::string> closedToOthers(const std::filesystem::path& folder)
{
  std::vector<std::string> sentences = closeToOthers(folder, {"das.db", "ocms.db", "das.key", "security.log"});
  for (std::string& sentence : closeToOthers(folder / "log", {"device"}))
    sentences.push_back(std::move(sentence));
  if (std::string sentence = openFolder(folder); !sentence.empty())
    sentences.push_back(std::move(sentence));
  return sentences;
}

/// What the operator has to know.
class Notices
{
public:
  /// With what there is to know before there is a log.
  explicit Notices(std::vector<std::string> early) : texts(std::move(early))
  {
  }

  void add(const std::string& text)
  {
    texts.push_back(text);
    log(text);
  }

  void logAll() const
  {
    for (const std::string& text : texts)
      log(text);
  }

  std::vector<std::string> texts;

private:
  static void log(const std::string& text)
  {
    logAppUni("HostPlatform", "host/src/Device", 2, __LINE__, "%s", text.c_str());
  }
};

class OpenLog
{
public:
  OpenLog(const DeviceSettings& settings, Notices& notices)
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
  KeyInPlace(const std::filesystem::path& file, Notices& notices)
  {
    try
    {
      useOrReplace(file, notices);
    }
    catch (const DiskTrouble& trouble)
    {
      notices.add(std::string(trouble.what()) +
                  "; until then encrypted values can be neither read nor written, and changes of them are refused");
    }
  }
  ~KeyInPlace()
  {
    forgetKey();
  }
  KeyInPlace(const KeyInPlace&) = delete;
  KeyInPlace& operator=(const KeyInPlace&) = delete;

private:
  static void useOrReplace(const std::filesystem::path& file, Notices& notices)
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
};

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

std::unique_ptr<SecurityLogService> openedLog(const std::filesystem::path& file, Notices& notices)
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
/// What SQLite keeps beside a database while it is open.
std::vector<std::string> changesOfDatabases()
{
  return {"das.db-wal", "ocms.db-wal"};
}
} // namespace

/// The order of the members is the order of bringing up, and the reverse of taking down.
struct Device::Content
{
  explicit Content(const DeviceSettings& settings)
      : folder(existingFolder(settings.folder)),
        lock(folder),
        notices(closedToOthers(folder)),
        log(settings, notices),
        key(folder / "das.key", notices),
        das(opened<DataAccessService>(folder / "das.db", disk, notices)),
        faultyDas(*das),
        traffic(faultyDas, rememberedExchanges),
        store(opened<LocalMgmtStore>(folder / "ocms.db", disk, notices)),
        faultyStore(*store),
        securityLog(openedLog(folder / "security.log", notices)),
        faultySecurityLog(*securityLog, (folder / "security.log").string()),
        interfaces(settings.interfaceCount)
  {
    noteChanges();
    setSlowWait(settings.slowWait);
    context.offer("DataAccessServiceIfc", &traffic);
    context.offer("LocalMgmtIfc", &faultyStore);
    context.offer("SecurityLogServiceIfc", &faultySecurityLog);
    context.offer("PhysicalInterfaceServiceIfc", &interfaces);
  }

  ~Content()
  {
    // The databases take their changes with them when they are closed.
    lock.forgetFiles();
  }
  Content(const Content&) = delete;
  Content& operator=(const Content&) = delete;

  /// Changes that a process left beside a database when it was killed are a part of it, and nothing in the database
  /// tells that they are gone.
  void noteChanges()
  {
    for (const std::string& name : gone)
      notices.add((folder / name).string() +
                  ": is gone, and was there when the device ended without being taken down; what was changed last may "
                  "be lost: put a backup in its place, or set the values again");
    lock.noteFiles(changesOfDatabases());
  }

  std::filesystem::path folder;
  LockedFolder lock;
  /// Before the databases are opened, which makes these files anew.
  std::vector<std::string> gone = lock.missingOf(changesOfDatabases());
  OnlyDevice only;
  Notices notices;
  OpenLog log;
  KeyInPlace key;
  FaultyDisk disk;
  std::unique_ptr<DataAccessService> das;
  FaultyDataAccessService faultyDas;
  TrafficRecorder traffic;
  std::unique_ptr<LocalMgmtStore> store;
  FaultyLocalMgmt faultyStore;
  std::unique_ptr<SecurityLogService> securityLog;
  FaultySecurityLogService faultySecurityLog;
  PhysicalInterfaceService interfaces;
  RuntimeContext context;
  FaultyContext faultyContext{context};
};

Device::Device(const DeviceSettings& settings) : content(std::make_unique<Content>(settings))
{
}

Device::~Device() = default;

::SvcRTEContext& Device::context()
{
  return content->faultyContext;
}

::LocalMgmtIfc& Device::offeredStore()
{
  return content->faultyStore;
}

::SecurityLogServiceIfc& Device::offeredSecurityLog()
{
  return content->faultySecurityLog;
}

DataAccessService& Device::das()
{
  return *content->das;
}

TrafficRecorder& Device::traffic()
{
  return content->traffic;
}

LocalMgmtStore& Device::store()
{
  return *content->store;
}

SecurityLogService& Device::securityLog()
{
  return *content->securityLog;
}

std::vector<std::string> Device::notices()
{
  std::vector<std::string> all = content->notices.texts;
  if (const std::string trouble = content->das->diskTrouble(); !trouble.empty())
    all.push_back(trouble + "; until then changes are refused");
  return all;
}
} // namespace host
