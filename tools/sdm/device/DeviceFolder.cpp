// Looks at the folder once, before anybody makes a file in it.
#include "DeviceFolder.h"

#include "DeviceMap.h"
#include "base/StartError.h"
#include "host/PrivateFiles.h"

namespace cli
{
namespace
{

std::filesystem::path checkedFolder(const std::filesystem::path& name, bool records)
{
  std::filesystem::path folder = std::filesystem::absolute(name).lexically_normal();
  for (const char* database : {"das.db", "ocms.db"})
  {
    if (records && std::filesystem::exists(folder / database))
      throw StartError("a recording begins with a new device, and " + folder.string() +
                       " has one already; choose another folder with --device");
  }
  return folder;
}

} // namespace

DeviceFolder::DeviceFolder(const std::filesystem::path& name, bool records)
    : folder(checkedFolder(name, records)),
      lostKey(std::filesystem::exists(folder / "das.db") && !std::filesystem::exists(folder / "das.key"))
{
}

// A map has defaults of passwords in it, a history the values of what is not known as a secret.
std::vector<std::string> DeviceFolder::closeOwnFiles() const
{
  return host::closeToOthers(folder, {mapName, "history.log", "service.json"});
}

} // namespace cli
