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

} // namespace

FileBeside::FileBeside(const std::filesystem::path& itsPlace)
    : place(itsPlace), name(place.string() + ".XXXXXX"), file(::mkostemp(name.data(), O_CLOEXEC))
{
}

FileBeside::~FileBeside()
{
  if (!done && file.number >= 0)
    ::unlink(name.c_str());
}

void FileBeside::write(const std::string& content, mode_t mode) const
{
  require(file.number >= 0 && ::fchmod(file.number, mode) == 0 && writeAll(file.number, content) &&
          ::fsync(file.number) == 0);
}

void FileBeside::giveTo(uid_t user, gid_t group) const
{
  if (file.number >= 0 && ::fchown(file.number, user, group) != 0)
    errno = 0;
}

void FileBeside::takePlace()
{
  done = ::rename(name.c_str(), place.c_str()) == 0;
  require(done);
}

void replaceFile(const std::filesystem::path& path, const std::string& content)
{
  FileBeside beside(path);
  beside.write(content, S_IRUSR | S_IWUSR);
  beside.takePlace();
  require(syncFolderOf(path));
}

bool syncFolderOf(const std::filesystem::path& path)
{
  const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
  const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return opened.number >= 0 && ::fsync(opened.number) == 0;
}

} // namespace cli
