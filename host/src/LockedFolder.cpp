// The folder itself is locked, and the lock file as well, which also names files that must be there at the next start.
#include "LockedFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <sstream>

#include "host/Error.h"

namespace host
{
namespace
{
/// The names that are written down are few.
constexpr std::size_t largestNote = 4096;

/// Not open when the folder has to do, as on a disk that takes no changes.
FileDescriptor lockFile(const std::filesystem::path& file, bool folderIsOpen)
{
  FileDescriptor writable = openRegular(file, O_RDWR | O_CREAT);
  const int reason = errno;
  if (writable.isOpen())
    return writable;
  FileDescriptor readable = openRegular(file, O_RDONLY);
  if (!readable.isOpen() && !folderIsOpen)
    throwSystemError(file, "cannot be opened", reason);
  return readable;
}
} // namespace

LockedFolder::LockedFolder(const std::filesystem::path& itsPath)
    : path(itsPath),
      folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
      file(lockFile(path / "lock", folder.isOpen()))
{
  // Who removes the lock file would let a second process in, and nobody removes the folder. Some network file systems
  // lock no folders; there the file has to do.
  if (folder.isOpen() && ::flock(folder.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
    inUse();
  if (!file.isOpen() || ::flock(file.number(), LOCK_EX | LOCK_NB) == 0)
    return;
  if (errno == EWOULDBLOCK)
    inUse();
  throwSystemError(path / "lock", "cannot be locked", errno);
}

void LockedFolder::inUse() const
{
  throw Error(path.string() + ": the device folder is in use already; one process at a time can run the device");
}

std::vector<std::string> LockedFolder::missingOf(const std::vector<std::string>& names) const
{
  std::vector<std::string> missing;
  if (!file.isOpen())
    return missing;
  std::istringstream noted(wholeContent(file, largestNote, path / "lock"));
  for (std::string name; std::getline(noted, name);)
  {
    std::error_code unknown;
    const bool asked = std::find(names.begin(), names.end(), name) != names.end();
    if (asked && !std::filesystem::exists(path / name, unknown) && !unknown)
      missing.push_back(name);
  }
  return missing;
}

void LockedFolder::noteFiles(const std::vector<std::string>& names)
{
  std::string text;
  std::error_code unknown;
  for (const std::string& name : names)
    if (std::filesystem::exists(path / name, unknown))
      text += name + "\n";
  write(text);
}

void LockedFolder::forgetFiles()
{
  write("");
}

// Nobody depends on it, so what cannot be written is left.
void LockedFolder::write(const std::string& text)
{
  if (!file.isOpen() || ::ftruncate(file.number(), 0) != 0)
    return;
  if (::pwrite(file.number(), text.data(), text.size(), 0) >= 0)
    ::fdatasync(file.number());
}
} // namespace host
