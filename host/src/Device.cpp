// Brings the parts up in the order of their members. What can be replaced or done without is noted and told.
#include "host/Device.h"

#include "DeviceFolder.h"
#include "DeviceParts.h"
#include "LockedFolder.h"
#include "host/FaultyServices.h"
#include "host/LockWatch.h"
#include "host/PhysicalInterfaceService.h"
#include "host/RuntimeContext.h"

namespace host
{
namespace
{
constexpr std::size_t rememberedExchanges = 100;

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
        das(openedDas(folder / "das.db", disk, notices)),
        faultyDas(*das),
        traffic(faultyDas, rememberedExchanges),
        store(openedStore(folder / "ocms.db", disk, notices)),
        faultyStore(*store),
        securityLog(openedSecurityLog(folder / "security.log", notices)),
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
