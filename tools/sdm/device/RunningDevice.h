// A device folder with a service running on it.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "DeviceFolder.h"
#include "DeviceListeners.h"
#include "DeviceMap.h"
#include "DeviceOwner.h"
#include "RunSettings.h"
#include "host/Device.h"
#include "map/ItemTable.h"
#include "map/Masking.h"
#include "service/LoadedService.h"
#include "service/RunningService.h"
#include "transcript/Recorder.h"

namespace cli
{

/// What a start of the service did.
struct StartSummary
{
  /// Values that setters got from the database and from the local store, after the defaults.
  std::size_t imported = 0;
  std::size_t localValues = 0;
  bool registered = true;
  /// The database was there, the key was not: a new one was made.
  bool newKey = false;
  CallReport calls;
  /// Among it the schemas that could not be read.
  PlatformReport platform;
  std::chrono::duration<double, std::milli> duration{0};
};

/// Brings everything up in its constructor and down in its destructor. The working folder becomes the device's,
/// since that is where the library looks for the map; during a start with another map it is one for that start.
class RunningDevice
{
public:
  /// Throws `StartError` with a line for the operator. Everything from here on is recorded when there is a recorder,
  /// which is borrowed; then the device has to be a new one, or nobody could do the same again.
  explicit RunningDevice(const RunSettings& settings, transcript::Recorder* recorder = nullptr);
  ~RunningDevice();
  RunningDevice(const RunningDevice&) = delete;
  RunningDevice& operator=(const RunningDevice&) = delete;

  /// Defaults, the database's values, publication.
  StartSummary restart();

  /// The same as after a power-up: service and manager are made again, and find their platform again. On the way there
  /// is none of either, so what throws leaves this to be destroyed only.
  StartSummary startAnew();

  /// Of the last start.
  const StartSummary& summary() const
  {
    return started;
  }
  /// The file that the operator named, not the device's copy.
  const std::filesystem::path& mapFile() const
  {
    return map.file();
  }
  /// What became of the device's copy of an earlier map, in words; empty when it is the same.
  const std::string& mapChange() const
  {
    return map.change();
  }
  const ItemTable& items() const
  {
    return table;
  }
  const Masking& masking() const
  {
    return masks;
  }
  host::Device& device()
  {
    return *platform;
  }
  /// Of this run and earlier ones.
  const History& history() const
  {
    return listeners.history();
  }
  /// By the name that it gave itself.
  const std::string& serviceName() const
  {
    return loaded.name();
  }
  RunningService& service()
  {
    return *running;
  }
  const std::filesystem::path& folder() const
  {
    return place.path();
  }

  /// What is not as it should be, each as a sentence that says what to do.
  std::vector<std::string> notices() const;

  /// The default that applies to this unit.
  const std::string& defaultOf(const MapItem& item) const;
  bool usesAlternative(const MapItem& item) const;

  /// What the database holds for an item, an encrypted one encrypted; nothing for local items, and when the database
  /// fails.
  std::optional<std::string> storedCell(const MapItem& item);

  /// Whether the database holds an encrypted value for it that the key does not open.
  bool isUndecryptable(const MapItem& item);

  /// What became of the manager's requests to the platform since the last call. What a command does not take is told
  /// when it ends.
  PlatformReport takeOutcomes()
  {
    return listeners.takeOutcomes();
  }

  /// Whether the service has a callback for it.
  bool hasSetter(const MapItem& item) const
  {
    return running->manager().hasSetter(item.setter);
  }
  bool hasGetter(const MapItem& item) const
  {
    return running->manager().hasGetter(item.getter);
  }

private:
  void rememberOwner();
  void provision();
  bool startService();
  void start(bool newKey);
  void takeDown();
  StartSummary summarise(std::chrono::steady_clock::time_point began);

  LoadedService loaded;
  DeviceFolder place;
  DeviceOwner owner;
  std::vector<std::string> ownNotices;
  DeviceMap map;
  std::uint32_t interfaces;
  ItemTable table;
  Masking masks;
  std::unique_ptr<host::Device> platform;
  DeviceListeners listeners;
  std::unique_ptr<RunningService> running;
  StartSummary started;
};

} // namespace cli
