#include "Files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "Trouble.h"

namespace host
{
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

void throwSystemError(const std::filesystem::path& file, const std::string& what, int errorNumber)
{
  const std::string text = file.string() + ": " + what + ": " + std::generic_category().message(errorNumber);
  switch (errorNumber)
  {
  case ENOSPC:
  case EDQUOT:
    throw DiskTrouble(text + "; make room on its disk");
  case EROFS:
  case EACCES:
  case EPERM:
    throw DiskTrouble(text + "; make it and its folder writable");
  case EIO:
    throw DiskTrouble(text + "; look whether its disk is broken");
  default:
    throw Error(text);
  }
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
