// Opens without waiting, checks what was opened, then reads up to the limit.
#include "WholeFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace cli
{
namespace
{

[[noreturn]] void tooLarge(std::size_t most)
{
  constexpr std::size_t mebibyte = 1024UL * 1024;
  throw Unusable("it has more than " +
                 (most % mebibyte == 0 ? std::to_string(most / mebibyte) + " MiB" : std::to_string(most) + " bytes"));
}

[[noreturn]] void systemRefused()
{
  const int reason = errno;
  throw Unusable(std::strerror(reason), reason);
}

int numberOf(const std::filesystem::path& path)
{
  const int number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  // So a socket answers.
  if (number < 0 && errno == ENXIO)
    throw Unusable("it is no regular file");
  if (number < 0)
    systemRefused();
  return number;
}

struct stat statusOf(int descriptor)
{
  struct stat status = {};
  if (::fstat(descriptor, &status) != 0)
    systemRefused();
  return status;
}

} // namespace

Descriptor openedRegular(const std::filesystem::path& path)
{
  const int number = numberOf(path);
  struct stat status = {};
  if (::fstat(number, &status) == 0 && S_ISREG(status.st_mode))
    return Descriptor(number);
  ::close(number);
  if (S_ISDIR(status.st_mode))
    throw Unusable(std::strerror(EISDIR), EISDIR);
  throw Unusable("it is no regular file");
}

std::string wholeContent(int descriptor, std::size_t most)
{
  std::string content;
  std::vector<char> piece(1U << 16U);
  for (;;)
  {
    const ssize_t taken = ::read(descriptor, piece.data(), piece.size());
    if (taken == 0)
      return content;
    if (taken < 0 && errno == EINTR)
      continue;
    if (taken < 0)
      systemRefused();
    content.append(piece.data(), static_cast<std::size_t>(taken));
    if (content.size() > most)
      tooLarge(most);
  }
}

std::string wholeFile(const std::filesystem::path& path, std::size_t most)
{
  const Descriptor file = openedRegular(path);
  // Before anything of it takes memory.
  if (statusOf(file.number).st_size > static_cast<off_t>(most))
    tooLarge(most);
  return wholeContent(file.number, most);
}

} // namespace cli
