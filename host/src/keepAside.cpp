// Files are renamed under a number that is free for all of them, the database's own last.
#include "host/keepAside.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>

#include "Files.h"

namespace host
{
namespace
{
/// The database's own file comes last: as long as it stands there it will be found damaged again.
constexpr std::array<const char*, 3> parts = {"-shm", "-wal", ""};

bool isFree(const std::string& name)
{
  for (const char* part : parts)
  {
    std::error_code unknown;
    if (std::filesystem::symlink_status(name + part, unknown).type() != std::filesystem::file_type::not_found)
      return false;
  }
  return true;
}

void renamePart(const std::string& from, const std::string& to)
{
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0 || errno == ENOENT)
    return;
  // Not every file system can be told not to replace; the name was free a moment ago.
  if (errno != EINVAL && errno != ENOSYS)
    throwSystemError(from, "cannot be kept aside", errno);
  if (::rename(from.c_str(), to.c_str()) != 0 && errno != ENOENT)
    throwSystemError(from, "cannot be kept aside", errno);
}
} // namespace

std::filesystem::path keepAside(const std::filesystem::path& file)
{
  int number = 1;
  const auto name = [&] { return file.string() + ".damaged-" + std::to_string(number); };
  while (!isFree(name()))
    ++number;
  for (const char* part : parts)
    renamePart(file.string() + part, name() + part);
  syncFolderOf(file);
  return name();
}
} // namespace host
