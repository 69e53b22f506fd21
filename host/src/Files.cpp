// Files are opened without waiting, told by their type on the descriptor, and written to the last byte.
#include "Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "Trouble.h"
#include "host/PrivateFiles.h"

namespace host
{
namespace
{
/// A pipe or a device in the place of a file would hold the device up, or never end.
[[noreturn]] void throwIrregular(const std::filesystem::path& file)
{
  throw Error(file.string() + ": is no regular file; move it away");
}

template <typename IsTaken>
FileDescriptor openAs(const std::filesystem::path& file, int flags, IsTaken isTaken)
{
  const int atOnce = flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  FileDescriptor opened((flags & O_CREAT) != 0 ? openPrivate(file, atOnce) : ::open(file.c_str(), atOnce));
  if (!opened.isOpen())
    return opened;
  struct stat status = {};
  if (::fstat(opened.number(), &status) != 0)
    throwSystemError(file, "cannot be examined", errno);
  if (!isTaken(status.st_mode))
    throwIrregular(file);
  return opened;
}
} // namespace

FileDescriptor::FileDescriptor(int number) : fd(number)
{
}

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept : fd(other.fd)
{
  other.fd = -1;
}

FileDescriptor::~FileDescriptor()
{
  if (fd >= 0)
    ::close(fd);
}

int FileDescriptor::number() const
{
  return fd;
}

bool FileDescriptor::isOpen() const
{
  return fd >= 0;
}

int FileDescriptor::release()
{
  return std::exchange(fd, -1);
}

std::string remedyOf(int errorNumber)
{
  switch (errorNumber)
  {
  case ENOSPC:
  case EDQUOT:
    return "; make room on its disk";
  case EROFS:
  case EACCES:
  case EPERM:
    return "; make it and its folder writable";
  case EIO:
    return "; look whether its disk is broken";
  default:
    return "";
  }
}

void throwSystemError(const std::filesystem::path& file, const std::string& what, int errorNumber)
{
  const std::string text = file.string() + ": " + what + ": " + std::generic_category().message(errorNumber);
  const std::string remedy = remedyOf(errorNumber);
  if (remedy.empty())
    throw Error(text);
  throw DiskTrouble(text + remedy);
}

void throwUnreadable(const std::filesystem::path& file, const std::string& what, int errorNumber)
{
  if (errorNumber != EACCES && errorNumber != EPERM)
    throwSystemError(file, what, errorNumber);
  throw DiskTrouble(file.string() + ": " + what + ": " + std::generic_category().message(errorNumber) +
                    "; let the user of this program read it");
}

FileDescriptor openRegular(const std::filesystem::path& file, int flags)
{
  return openAs(file, flags, [](mode_t type) { return S_ISREG(type); });
}

FileDescriptor openRegularOrDevice(const std::filesystem::path& file, int flags)
{
  return openAs(file, flags, [](mode_t type) { return S_ISREG(type) || S_ISCHR(type); });
}

void requireRegular(const std::filesystem::path& file)
{
  struct stat status = {};
  // Whoever opens a folder as a file is told at once.
  if (::stat(file.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode))
    throwIrregular(file);
}

std::string wholeContent(const FileDescriptor& descriptor, std::size_t most, const std::filesystem::path& file)
{
  // One byte more tells that there is more.
  std::string content(most + 1, '\0');
  std::size_t size = 0;
  while (size < content.size())
  {
    const ssize_t taken = ::pread(descriptor.number(), &content[size], content.size() - size, static_cast<off_t>(size));
    if (taken < 0 && errno != EINTR)
      throwUnreadable(file, "cannot be read", errno);
    if (taken == 0)
      break;
    size += taken < 0 ? 0 : static_cast<std::size_t>(taken);
  }
  content.resize(size);
  return content;
}

void writeAll(int descriptor, std::string_view text, const std::filesystem::path& file)
{
  while (!text.empty())
  {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR)
      continue;
    if (written < 0)
      throwSystemError(file, "cannot be written", errno);
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

void syncFolderOf(const std::filesystem::path& file)
{
  const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
  const FileDescriptor directory(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!directory.isOpen() || ::fsync(directory.number()) != 0)
    throwSystemError(folder, "cannot be made to last", errno);
}
} // namespace host
