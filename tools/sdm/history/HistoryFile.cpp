// Every call opens the file by itself and refuses what is no regular file.
#include "HistoryFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/Descriptor.h"
#include "host/PrivateFiles.h"

namespace cli
{
namespace
{

constexpr std::size_t mostRead = 8UL * 1024 * 1024;
constexpr std::size_t firstSpan = 4096;

/// 0 and the size of a regular file, or the reason why it is none that can be used.
int sizeOf(int descriptor, std::size_t& size)
{
  struct stat status = {};
  // So a pipe without a reader answers.
  if (descriptor < 0 && errno == ENXIO)
    return EINVAL;
  if (descriptor < 0 || ::fstat(descriptor, &status) != 0)
    return errno;
  if (!S_ISREG(status.st_mode))
    return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  size = static_cast<std::size_t>(status.st_size);
  return 0;
}

/// 0 and the last `count` bytes of the first `size`, or the reason why they cannot be read.
int readEnd(int descriptor, std::size_t size, std::size_t count, std::string& text)
{
  text.resize(count);
  for (std::size_t done = 0; done < count;)
  {
    const ssize_t got = ::pread(descriptor, text.data() + done, count - done, static_cast<off_t>(size - count + done));
    if (got < 0 && errno == EINTR)
      continue;
    if (got < 0)
      return errno;
    if (got == 0)
      text.resize(done);
    if (got == 0)
      return 0;
    done += static_cast<std::size_t>(got);
  }
  return 0;
}

/// A FIFO in the file's place would hold up the start.
int openForReading(const std::filesystem::path& file)
{
  return ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
}

} // namespace

void eachLine(std::string_view text, const std::function<void(std::string_view)>& line)
{
  while (!text.empty())
  {
    const std::size_t end = std::min(text.find('\n'), text.size());
    line(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

HistoryFile::HistoryFile(const std::filesystem::path& deviceFolder) : file(deviceFolder / "history.log")
{
}

std::string HistoryFile::wordsOf(int reason)
{
  return reason == EINVAL ? "it is no regular file" : std::strerror(reason);
}

int HistoryFile::append(const std::string& text, std::size_t& size) const
{
  const Descriptor opened(host::openPrivate(file, O_RDWR | O_APPEND | O_NONBLOCK));
  if (const int reason = sizeOf(opened.number, size); reason != 0)
    return reason;
  char last = '\n';
  if (size > 0 && ::pread(opened.number, &last, 1, static_cast<off_t>(size) - 1) != 1)
    return EIO;
  if (!writeAll(opened.number, last == '\n' ? text : "\n" + text))
    return errno;
  size += text.size();
  return 0;
}

int HistoryFile::read(const std::function<void(std::string_view)>& line) const
{
  const Descriptor opened(openForReading(file));
  std::size_t size = 0;
  if (const int reason = sizeOf(opened.number, size); reason != 0)
    return reason;
  std::string content;
  if (const int reason = readEnd(opened.number, size, std::min(size, mostRead), content); reason != 0)
    return reason;
  eachLine(content, line);
  return 0;
}

std::string HistoryFile::lastLineWith(const std::string& beginning) const
{
  const Descriptor opened(openForReading(file));
  std::size_t size = 0;
  std::string end;
  if (sizeOf(opened.number, size) != 0)
    return "";
  for (std::size_t span = firstSpan;; span *= 4)
  {
    const std::size_t count = std::min({span, size, mostRead});
    if (readEnd(opened.number, size, count, end) != 0)
      return "";
    const std::size_t found = ("\n" + end).rfind("\n" + beginning);
    // A line that begins where the reading does may be the end of another one.
    if (found != std::string::npos && (found > 0 || count == size))
      return end.substr(found, end.find('\n', found) - found);
    if (count < span)
      return "";
  }
}

bool HistoryFile::replace(const std::string& text) const
{
  const std::filesystem::path draft = file.string() + ".new";
  const Descriptor opened(host::openPrivate(draft, O_WRONLY | O_TRUNC | O_NONBLOCK | O_NOFOLLOW));
  return opened.number >= 0 && writeAll(opened.number, text) && ::rename(draft.c_str(), file.c_str()) == 0;
}

} // namespace cli
