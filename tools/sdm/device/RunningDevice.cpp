// Parts come up in the order in which they need each other: the folder, its owner and map, the device, the service.
#include "RunningDevice.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/ExceptionText.h"
#include "base/Shown.h"
#include "host/Error.h"
#include "host/Faults.h"
#include "host/KeyFile.h"
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

} // namespace

RunningDevice::RunningDevice(const RunSettings& settings, transcript::Recorder* recorder)
try : loaded(settings.service.value_or(sampleService())), place(settings.device, recorder != nullptr),
    owner(folder(), loaded, settings.takeOver), map(folder(), settings.map, loaded), interfaces(settings.interfaces),
    table(map.file()), masks(table), platform(bringUp(folder(), settings)),
    listeners(folder(), table, masks, interfaces, *platform)
{
  ownNotices = place.closeOwnFiles();
  if (recorder != nullptr)
    listeners.record(*recorder,
                     {SDM_VERSION, loaded.name(), transcript::digestOf(map.file()), interfaces, settings.logLevel});
  listeners.listen();
  map.enter();
  provision();
  platform->das().provision(loaded.provisioning());
  start(place.hadLostItsKey());
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
  listeners.endRecord();
  takeDown();
}

// An owner that cannot be remembered is told, and no reason to go without a service.
void RunningDevice::rememberOwner()
{
  for (const std::string& notice : {owner.trouble(), owner.remember(loaded, map.file())})
    if (!notice.empty())
      ownNotices.push_back(notice);
}

bool RunningDevice::startService()
{
  try
  {
    running = std::make_unique<RunningService>(loaded.service(), listeners.platform(), table, &listeners.all());
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

std::vector<std::string> RunningDevice::notices() const
{
  std::vector<std::string> all = map.notices();
  all.insert(all.end(), ownNotices.begin(), ownNotices.end());
  if (const std::string problem = listeners.history().problem(); !problem.empty())
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
                     (folder() / "das.db").string() + ": " + error.what() +
                     "; mend the map, or choose another folder with --device");
  }
}

void RunningDevice::start(bool newKey)
{
  listeners.takeOutcomes();
  const auto began = std::chrono::steady_clock::now();
  const bool registered = startService();
  started = summarise(began);
  started.registered = registered;
  started.newKey = newKey;
}

StartSummary RunningDevice::startAnew()
{
  takeDown();
  listeners.history().forgetLive();
  loaded.makeAnew();
  start(false);
  return started;
}

StartSummary RunningDevice::restart()
{
  running->takeReport();
  listeners.takeOutcomes();
  const auto began = std::chrono::steady_clock::now();
  running->restart(itemMap);
  started = summarise(began);
  return started;
}

StartSummary RunningDevice::summarise(std::chrono::steady_clock::time_point began)
{
  StartSummary summary;
  summary.duration = std::chrono::steady_clock::now() - began;
  summary.calls = running->takeReport();
  summary.platform = listeners.takeOutcomes();
  summary.imported = summary.platform.imported;
  summary.localValues = summary.calls.localValues;
  return summary;
}

const std::string& RunningDevice::defaultOf(const MapItem& item) const
{
  return item.defaultOf(usesAlternative(item) ? DefaultKind::alternative : DefaultKind::usual);
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

} // namespace cli
