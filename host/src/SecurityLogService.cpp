// One line a record, on the disk before the call returns. A line that was torn by a crash is ended before the next.
#include "host/SecurityLogService.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include "Files.h"
#include "Log.h"
#include "LogRotation.h"
#include "PlainLine.h"
#include "host/Error.h"
#include "host/PrivateFiles.h"

namespace host
{
namespace
{
/// No field of a record holds a single backslash before these letters, so a piece cannot pass for a record.
constexpr const char* endOfTornLine = "\t\\unfinished\n";

std::string isoTime(time_t when)
{
  std::tm parts = {};
  std::array<char, 64> text{};
  if (::gmtime_r(&when, &parts) == nullptr ||
      std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts) == 0)
    return "@" + std::to_string(when);
  return text.data();
}

std::string field(const std::string& text)
{
  return "\t" + (text.empty() ? "-" : oneLine(text, true));
}

int opened(const std::filesystem::path& file)
{
  finishRotation(file);
  FileDescriptor log = openRegularOrDevice(file, O_RDWR | O_APPEND | O_CREAT);
  if (!log.isOpen())
    throwSystemError(file, "the security log cannot be opened", errno);
  syncFolderOf(file);
  return log.release();
}

/// The last bytes of the file that hold at least `count` whole lines, or all of it.
std::string tailOf(int descriptor, std::size_t count, const std::filesystem::path& file)
{
  const off_t end = ::lseek(descriptor, 0, SEEK_END);
  for (off_t span = 16384;; span *= 2)
  {
    const off_t start = std::max<off_t>(0, end - span);
    std::string tail(static_cast<std::size_t>(end - start), '\0');
    if (::pread(descriptor, tail.data(), tail.size(), start) != end - start)
      throwUnreadable(file, "cannot be read", errno);
    if (start == 0 || static_cast<std::size_t>(std::count(tail.begin(), tail.end(), '\n')) > count)
      return tail;
  }
}

std::vector<std::string> linesOf(std::string_view text)
{
  std::vector<std::string> lines;
  while (!text.empty())
  {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}
} // namespace

SecurityLogService::SecurityLogService(const std::filesystem::path& itsFile) : file(itsFile), descriptor(opened(file))
{
  try
  {
    if (endsInsideLine())
      writeAll(descriptor, endOfTornLine, file);
  }
  catch (...)
  {
    ::close(descriptor);
    throw;
  }
}

SecurityLogService::SecurityLogService(const std::filesystem::path& itsFile, const Error& why)
    : file(itsFile), unwritable(why.what()), descriptor(openRegularOrDevice(file, O_RDONLY).release())
{
}

SecurityLogService::~SecurityLogService()
{
  if (descriptor >= 0)
    ::close(descriptor);
}

bool SecurityLogService::endsInsideLine() const
{
  struct stat status = {};
  if (::fstat(descriptor, &status) != 0)
    throwSystemError(file, "cannot be examined", errno);
  char last = '\n';
  if (status.st_size > 0 && ::pread(descriptor, &last, 1, status.st_size - 1) != 1)
    throwUnreadable(file, "cannot be read", errno);
  return last != '\n';
}

bool SecurityLogService::isFull(std::size_t more) const
{
  struct stat status = {};
  if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
    return false;
  const auto size = static_cast<std::size_t>(status.st_size);
  return size > 0 && size + more > std::max(fullLog, unrotated);
}

/// A log that is too long is better than a record that is missing, so a failure is only told.
void SecurityLogService::rotate(std::string& line)
{
  try
  {
    const std::size_t torn = std::string_view(endOfTornLine).size();
    if (line.compare(0, torn, endOfTornLine) == 0)
    {
      writeAll(descriptor, endOfTornLine, file);
      line.erase(0, torn);
    }
    const int full = std::exchange(descriptor, rotated(file).release());
    ::close(full);
    unrotated = 0;
  }
  catch (const Error& error)
  {
    unrotated = static_cast<std::size_t>(::lseek(descriptor, 0, SEEK_END)) + fullLog / 4;
    SDM_HOST_LOG(2, "the security log is full and goes on in the same file: %s", error.what());
  }
}

void SecurityLogService::logSecurityEvent(time_t when, int facility, int severity, int eventType, int eventClass,
                                          bool failed, std::string record, std::string user, std::string origin)
{
  std::string line = isoTime(when);
  for (const int code : {facility, severity, eventType, eventClass})
    line += "\t" + std::to_string(code);
  line += failed ? "\tfailed" : "\tok";
  line += field(record) + field(user) + field(origin) + "\n";

  const std::lock_guard<std::mutex> lock(mutex);
  if (!unwritable.empty())
    throw Error(unwritable);
  if (endsInsideLine())
    line.insert(0, endOfTornLine);
  if (isFull(line.size()))
    rotate(line);
  writeAll(descriptor, line, file);
  if (::fdatasync(descriptor) != 0)
    throwSystemError(file, "cannot be made to last", errno);
}

std::vector<std::string> SecurityLogService::lastLines(std::size_t count)
{
  const std::lock_guard<std::mutex> lock(mutex);
  if (descriptor < 0)
    throw Error(unwritable);
  std::vector<std::string> lines = linesOf(tailOf(descriptor, count, file));
  for (std::size_t number = 1; number <= olderLogs && lines.size() < count; ++number)
  {
    const FileDescriptor older(::open(olderLog(file, number).c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!older.isOpen())
      break;
    const std::vector<std::string> more = linesOf(tailOf(older.number(), count - lines.size(), olderLog(file, number)));
    lines.insert(lines.begin(), more.begin(), more.end());
  }
  if (lines.size() > count)
    lines.erase(lines.begin(), lines.end() - static_cast<std::ptrdiff_t>(count));
  return lines;
}
} // namespace host
