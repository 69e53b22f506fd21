// The map that was asked for, or the service's own, is tried in a folder of its own before it becomes the device's.
#include "DeviceMap.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <system_error>

#include "base/ReplacedFile.h"
#include "base/StartError.h"
#include "base/WholeFile.h"
#include "host/keepAside.h"
#include "map/ItemTable.h"
#include "map/MapCopy.h"

namespace cli
{
namespace
{

constexpr const char* startFolder = "starting";
constexpr const char* previous = ".previous";

bool isUsable(const std::filesystem::path& map)
{
  try
  {
    return !ItemTable(map).items().empty();
  }
  catch (const StartError&)
  {
    return false;
  }
}

bool isSame(const std::filesystem::path& map, const std::filesystem::path& own)
{
  try
  {
    return mapContent(own) == mapContent(map);
  }
  catch (const StartError&)
  {
    return false;
  }
}

/// In the device folder, so that the next start finds and removes what a killed one left; where that takes no changes,
/// among the system's temporary ones.
std::filesystem::path folderForStart(const std::filesystem::path& device)
{
  std::error_code failed;
  std::filesystem::path own = device / startFolder;
  if (std::filesystem::create_directory(own, failed) && !failed)
    return own;
  std::string name = (std::filesystem::temp_directory_path() / "sdm-start-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr)
    throw StartError("no folder can be made to start in, neither " + own.string() + " nor " + name + ": " +
                     std::strerror(errno) + "; make room and one of them writable");
  return name;
}

} // namespace

DeviceMap::DeviceMap(const std::filesystem::path& deviceFolder, const std::optional<std::filesystem::path>& asked,
                     const LoadedService& service)
    : folder(deviceFolder), map(std::filesystem::absolute(asked ? *asked : service.itemMap()))
{
  try
  {
    const ItemTable readable(map);
  }
  catch (const StartError& error)
  {
    const std::filesystem::path own = folder / mapName;
    if (asked || !isUsable(own))
      throw;
    told.push_back(std::string(error.what()) + "; until then the device goes on with its own copy of an earlier one, " +
                   own.string());
    map = own;
  }
}

DeviceMap::~DeviceMap()
{
  std::error_code ignored;
  if (!scratch.empty())
    std::filesystem::remove_all(scratch, ignored);
}

const std::filesystem::path& DeviceMap::file() const
{
  return map;
}

void DeviceMap::enter()
{
  std::error_code left;
  std::filesystem::remove_all(folder / startFolder, left);
  if (!isSame(map, folder / mapName))
  {
    scratch = folderForStart(folder);
    copyMap(map, scratch / mapName);
  }
  std::filesystem::current_path(scratch.empty() ? folder : scratch);
}

void DeviceMap::putAside(const std::filesystem::path& own)
{
  std::error_code unknown;
  if (!std::filesystem::exists(std::filesystem::symlink_status(own, unknown)))
    return;
  if (!isUsable(own))
  {
    told.push_back("the device's item map " + own.string() + " is damaged and kept as " +
                   host::keepAside(own).string() + "; it was made anew from " + map.string() +
                   ", so nothing is to be done");
    return;
  }
  const std::string kept = own.string() + previous;
  copyMap(own, kept);
  changed = map.string() + " took the place of the device's earlier one, which is kept as " + kept;
}

void DeviceMap::keep()
{
  if (scratch.empty())
    return;
  const std::filesystem::path own = folder / mapName;
  try
  {
    putAside(own);
    // What the library has read, even if somebody has changed the file since.
    copyMap(scratch / mapName, own);
    std::filesystem::current_path(folder);
    std::filesystem::remove_all(scratch);
    scratch.clear();
  }
  catch (const std::exception& error)
  {
    changed.clear();
    told.emplace_back(error.what());
  }
}

const std::vector<std::string>& DeviceMap::notices() const
{
  return told;
}

const std::string& DeviceMap::change() const
{
  return changed;
}

} // namespace cli
