// The text is written beside the place, synced and renamed; a failure leaves the old file.
#include "ReplacedFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "WholeFile.h"

namespace cli
{
namespace
{

/// Throws `Unusable` unless something was done.
void require(bool done)
{
  if (done)
    return;
  const int reason = errno;
  throw Unusable(std::strerror(reason), reason);
}

/// A file of its own beside a place; gone in the end unless it took that place.
class Beside
{
public:
  explicit Beside(const std::filesystem::path& place)
      : name(place.string() + ".XXXXXX"), file(::mkostemp(name.data(), O_CLOEXEC))
  {
  }
  ~Beside()
  {
    if (!done && file.number >= 0)
      ::unlink(name.c_str());
  }
  Beside(const Beside&) = delete;
  Beside& operator=(const Beside&) = delete;

  void write(const std::string& content) const
  {
    require(file.number >= 0 && ::fchmod(file.number, S_IRUSR | S_IWUSR) == 0 && writeAll(file.number, content) &&
            ::fsync(file.number) == 0);
  }

  void takePlace(const std::filesystem::path& place)
  {
    done = ::rename(name.c_str(), place.c_str()) == 0;
    require(done);
  }

private:
  std::string name;
  Descriptor file;
  bool done = false;
};

} // namespace

void replaceFile(const std::filesystem::path& path, const std::string& content)
{
  Beside beside(path);
  beside.write(content);
  beside.takePlace(path);
  require(syncFolderOf(path));
}

bool syncFolderOf(const std::filesystem::path& path)
{
  const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
  const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return opened.number >= 0 && ::fsync(opened.number) == 0;
}

} // namespace cli
