// The item map of a device that comes up: which one it is, where the library finds it, and the device's own copy.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "service/LoadedService.h"

namespace cli
{

/// The name under which the library looks for a map in the working folder.
constexpr const char* mapName = "CommsSettings.csv";

/// The device's copy changes only once a start with the new map has succeeded: a service that fails with a new map goes
/// on with the old one as soon as it is asked to.
class DeviceMap
{
public:
  /// The map that the operator asked for; without one that of the service, and when that cannot be used the device's
  /// copy of an earlier one. Throws `StartError` when none of these can be used, and whenever the one that was asked
  /// for cannot be.
  DeviceMap(const std::filesystem::path& deviceFolder, const std::optional<std::filesystem::path>& asked,
            const LoadedService& service);

  /// Takes away what lies in `enter`'s folder.
  ~DeviceMap();
  DeviceMap(const DeviceMap&) = delete;
  DeviceMap& operator=(const DeviceMap&) = delete;

  /// The file that the operator or the service named, or the device's copy.
  const std::filesystem::path& file() const;

  /// Makes a folder with this map the working folder: the device's when its copy is the same, otherwise one for the
  /// start. The device folder has to be this process's. Throws `StartError`.
  void enter();

  /// The start has succeeded: the map becomes the device's copy, the one before is kept beside it, and the device
  /// folder becomes the working folder. What fails is a notice.
  void keep();

  /// What is not as it should be, each as a sentence that says what to do.
  const std::vector<std::string>& notices() const;

  /// What `keep` did to an earlier copy, in words; empty when it did nothing.
  const std::string& change() const;

private:
  void putAside(const std::filesystem::path& own);

  const std::filesystem::path folder;
  std::filesystem::path map;
  /// Where the library finds the map as long as the device's copy is another one; empty otherwise.
  std::filesystem::path scratch;
  std::vector<std::string> told;
  std::string changed;
};

} // namespace cli
