// A map is written beside the old one, synced and renamed.
#include "MapFile.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
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

/// A file beside another one that is gone in the end unless it took the other one's place.
class Replacement
{
public:
  explicit Replacement(const std::filesystem::path& place) : target(place), name(place.string() + ".XXXXXX")
  {
    descriptor = ::mkostemp(name.data(), O_CLOEXEC);
  }
  ~Replacement()
  {
    if (descriptor < 0)
      return;
    ::close(descriptor);
    if (!done)
      ::unlink(name.c_str());
  }
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  bool write(const std::string& content, const struct stat& like)
  {
    // Whose file it is only root can keep; that it cannot be kept is no reason to fail.
    if (descriptor >= 0 && ::fchown(descriptor, like.st_uid, like.st_gid) != 0)
      errno = 0;
    return descriptor >= 0 && ::fchmod(descriptor, like.st_mode & 07777U) == 0 && writeAll(descriptor, content) &&
           ::fsync(descriptor) == 0;
  }

  bool takePlace()
  {
    done = ::rename(name.c_str(), target.c_str()) == 0;
    return done;
  }

private:
  std::filesystem::path target;
  std::string name;
  int descriptor = -1;
  bool done = false;
};

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
  Replacement replacement(place);
  if (!replacement.write(content, status))
    unwritable(path, std::strerror(errno));
  if (readMap(place.string()) != old)
    unwritable(path, "somebody else has changed it");
  if (!replacement.takePlace())
    unwritable(path, std::strerror(errno));
  syncFolderOf(place);
}

} // namespace cli
