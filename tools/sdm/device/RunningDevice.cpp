#include "RunningDevice.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/ExceptionText.h"
#include "base/Shown.h"
#include "host/DasCrypt.h"
#include "host/Error.h"
#include "host/Faults.h"
#include "host/PrivateFiles.h"
#include "map/Schemas.h"

namespace cli
{
namespace
{

constexpr const char* itemMap = "CommsItemMap";

std::unique_ptr<host::Device> bringUp(const std::filesystem::path& folder, const RunSettings& settings)
{
  host::DeviceSettings device;
  device.folder = folder;
  device.interfaceCount = settings.interfaces;
  device.logLevel = settings.logLevel;
  device.consoleLevel = settings.consoleLevel;
  device.slowWait = settings.slowWait;
  return std::make_unique<host::Device>(device);
}

/// The device's folder; for a recording one without a device.
std::filesystem::path folderFor(const RunSettings& settings, bool records)
{
  std::filesystem::path folder = std::filesystem::absolute(settings.device).lexically_normal();
  for (const char* name : {"das.db", "ocms.db"})
  {
    if (records && std::filesystem::exists(folder / name))
      throw StartError("a recording begins with a new device, and " + folder.string() +
                       " has one already; choose another folder with --device");
  }
  return folder;
}

bool isKeyLost(const std::filesystem::path& folder)
{
  return std::filesystem::exists(folder / "das.db") && !std::filesystem::exists(folder / "das.key");
}

} // namespace

RunningDevice::RunningDevice(const RunSettings& settings, record::Recorder* itsRecorder)
try : loaded(settings.service.value_or(sampleService())), path(folderFor(settings, itsRecorder != nullptr)),
    owner(path, loaded, settings.takeOver), map(path, settings.map, loaded), interfaces(settings.interfaces),
    table(map.file()), masks(table), lostKey(isKeyLost(path)), platform(bringUp(path, settings)), events(path),
    historian(events, table, masks, interfaces), recorder(itsRecorder), outcomes(table), watched(*platform, listeners)
{
  closeOwnFiles();
  beginRecord(settings);
  listeners.add(outcomes);
  listeners.add(historian);
  map.enter();
  provision();
  platform->das().provision(loaded.provisioning());
  start(lostKey);
  map.keep();
  rememberOwner();
}
catch (const host::Error& error)
{
  throw StartError(std::string(error.what()) + "; mend that, or choose another folder with --device");
}
catch (const std::filesystem::filesystem_error& error)
{
  throw StartError(exceptionText(error) + "; mend that, or choose another folder with --device");
}

RunningDevice::~RunningDevice()
{
  if (recorder != nullptr)
    recorder->end();
  takeDown();
}

// An owner that cannot be remembered is told, and no reason to go without a service.
void RunningDevice::rememberOwner()
{
  for (const std::string& notice : {owner.trouble(), owner.remember(loaded, map.file())})
    if (!notice.empty())
      ownNotices.push_back(notice);
}

void RunningDevice::beginRecord(const RunSettings& settings)
{
  if (recorder == nullptr)
    return;
  const record::Header header = {SDM_VERSION, loaded.name(), record::digestOf(map.file()), interfaces,
                                 settings.logLevel};
  recorder->begin(header, table, masks, path);
  recorded = std::make_unique<record::RecordedLog>(*recorder);
  listeners.add(*recorder);
}

bool RunningDevice::startService()
{
  try
  {
    running = std::make_unique<RunningService>(loaded.service(), watched, table, &listeners);
    return running->start(itemMap);
  }
  catch (const host::Error&)
  {
    takeDown();
    throw;
  }
  catch (const std::exception& error)
  {
    takeDown();
    throw StartError("the service " + loaded.file().string() + " failed at its start: " + error.what());
  }
}

// The store reports changes on a thread of its own.
void RunningDevice::takeDown()
{
  if (running)
    platform->store().forgetAgent(&running->agent());
  running.reset();
}

/// A map has defaults of passwords in it, a history the values of what is not known as a secret.
void RunningDevice::closeOwnFiles()
{
  for (std::string& notice : host::closeToOthers(path, {mapName, "history.log", "service.json"}))
    ownNotices.push_back(std::move(notice));
}

std::vector<std::string> RunningDevice::notices() const
{
  std::vector<std::string> all = map.notices();
  all.insert(all.end(), ownNotices.begin(), ownNotices.end());
  if (const std::string problem = events.problem(); !problem.empty())
    all.push_back(problem + "; what gives items their values is not kept until that is mended");
  for (const std::string& notice : platform->notices())
    all.push_back(notice);
  return all;
}

void RunningDevice::provision()
{
  try
  {
    platform->das().provision(schemasOf(table));
  }
  catch (const host::Error& error)
  {
    throw StartError("the item map " + map.file().string() + " does not fit the database " +
                     (path / "das.db").string() + ": " + error.what() +
                     "; mend the map, or choose another folder with --device");
  }
}

void RunningDevice::start(bool newKey)
{
  outcomes.take();
  const auto began = std::chrono::steady_clock::now();
  const bool registered = startService();
  started = summarise(began);
  started.registered = registered;
  started.newKey = newKey;
}

StartSummary RunningDevice::startAnew()
{
  takeDown();
  events.forgetLive();
  loaded.makeAnew();
  start(false);
  return started;
}

StartSummary RunningDevice::restart()
{
  running->takeReport();
  outcomes.take();
  const auto began = std::chrono::steady_clock::now();
  running->restart(itemMap);
  started = summarise(began);
  return started;
}

PlatformReport RunningDevice::takeOutcomes()
{
  return outcomes.take();
}

StartSummary RunningDevice::summarise(std::chrono::steady_clock::time_point began)
{
  StartSummary summary;
  summary.duration = std::chrono::steady_clock::now() - began;
  summary.calls = running->takeReport();
  summary.platform = outcomes.take();
  summary.imported = summary.platform.imported;
  summary.localValues = summary.calls.localValues;
  return summary;
}

const StartSummary& RunningDevice::summary() const
{
  return started;
}

const std::filesystem::path& RunningDevice::mapFile() const
{
  return map.file();
}

const std::string& RunningDevice::mapChange() const
{
  return map.change();
}

const ItemTable& RunningDevice::items() const
{
  return table;
}

const Masking& RunningDevice::masking() const
{
  return masks;
}

host::Device& RunningDevice::device()
{
  return *platform;
}

const History& RunningDevice::history() const
{
  return events;
}

const std::string& RunningDevice::serviceName() const
{
  return loaded.name();
}

RunningService& RunningDevice::service()
{
  return *running;
}

const std::filesystem::path& RunningDevice::folder() const
{
  return path;
}

const std::string& RunningDevice::defaultOf(const MapItem& item) const
{
  return usesAlternative(item) ? item.alternativeDefault : item.defaultValue;
}

bool RunningDevice::usesAlternative(const MapItem& item) const
{
  return takesAlternative(item, interfaces);
}

std::optional<std::string> RunningDevice::storedCell(const MapItem& item)
{
  if (item.isLocal())
    return std::nullopt;
  try
  {
    return platform->das().storedCell(item.schema, item.column, item.indexName, item.indexValue);
  }
  catch (const host::Error&)
  {
    return std::nullopt; // The schema's own read failed as well, and was told.
  }
}

bool RunningDevice::isUndecryptable(const MapItem& item)
{
  // An empty cell is the manager's own text for an empty value.
  const auto cell = item.encrypted ? storedCell(item) : std::nullopt;
  std::string plain;
  const host::WithoutFaults asItIs;
  return cell && !cell->empty() && !DasCrypt::fromEncryptedText(*cell, plain);
}

bool RunningDevice::hasSetter(const MapItem& item) const
{
  return running->manager().hasSetter(item.setter);
}

bool RunningDevice::hasGetter(const MapItem& item) const
{
  return running->manager().hasGetter(item.getter);
}

} // namespace cli
