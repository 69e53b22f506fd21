// A map is written beside the old one, synced and renamed.
#include "MapFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include "base/ReplacedFile.h"
#include "base/WholeFile.h"

namespace cli
{
namespace
{

[[noreturn]] void unwritable(const std::string& path, const std::string& why)
{
  throw FileError("the item map " + path + " cannot be mended: " + why + "; it is as it was");
}

} // namespace

std::string readMap(const std::string& path)
{
  try
  {
    return path == "-" ? wholeContent(STDIN_FILENO) : wholeFile(path);
  }
  catch (const Unusable& error)
  {
    throw FileError("the item map " + path + " cannot be read: " + error.what());
  }
}

void replaceMap(const std::string& path, const std::string& old, const std::string& content)
{
  std::error_code failure;
  const std::filesystem::path place = std::filesystem::canonical(path, failure);
  struct stat status
  {
  };
  if (failure || ::stat(place.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
    unwritable(path, failure ? failure.message() : "it is no ordinary file");
  if (::access(place.c_str(), W_OK) != 0)
    unwritable(path, std::strerror(errno));
  try
  {
    FileBeside beside(place);
    beside.giveTo(status.st_uid, status.st_gid);
    beside.write(content, status.st_mode & 07777U);
    if (readMap(place.string()) != old)
      unwritable(path, "somebody else has changed it");
    beside.takePlace();
  }
  catch (const Unusable& error)
  {
    unwritable(path, error.what());
  }
  syncFolderOf(place);
}

} // namespace cli
