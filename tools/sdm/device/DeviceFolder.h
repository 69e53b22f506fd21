// The folder of a device as it is found, before the device comes up.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace cli
{

class DeviceFolder
{
public:
  /// `name` may be relative to the working folder. Who is going to record needs a folder without a device: throws
  /// `StartError` when there is one.
  DeviceFolder(const std::filesystem::path& name, bool records);

  /// Absolute.
  const std::filesystem::path& path() const
  {
    return folder;
  }

  /// The database was there, its key was not.
  bool hadLostItsKey() const
  {
    return lostKey;
  }

  /// Closes the program's own files to everybody else. Tells which were open.
  std::vector<std::string> closeOwnFiles() const;

private:
  const std::filesystem::path folder;
  const bool lostKey;
};

} // namespace cli
