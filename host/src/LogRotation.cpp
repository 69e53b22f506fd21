// A new log is finished beside the old one before names are shifted, so that a power cut loses no record.
#include "LogRotation.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include "PlainLine.h"
#include "host/PrivateFiles.h"

namespace host
{
namespace
{
/// No field of a record holds a single backslash before these letters, so no record can pass for it.
constexpr std::string_view endOfFirstLine = "\t\\continued";
constexpr std::string_view beforeCount = "dropped so far: ";

struct Dropped
{
  unsigned long long records = 0;
  std::string until;
};

bool ends(std::string_view text, std::string_view with)
{
  return text.size() >= with.size() && text.compare(text.size() - with.size(), with.size(), with) == 0;
}

bool isThere(const std::filesystem::path& file)
{
  std::error_code unknown;
  return std::filesystem::symlink_status(file, unknown).type() != std::filesystem::file_type::not_found;
}

std::filesystem::path draftOf(const std::filesystem::path& file)
{
  return file.string() + ".new";
}

void renameLog(const std::filesystem::path& from, const std::filesystem::path& to)
{
  if (::rename(from.c_str(), to.c_str()) != 0)
    throwSystemError(from, "cannot be renamed", errno);
}

/// What had been dropped when the log was begun, as its first line says.
Dropped droppedBefore(const std::filesystem::path& file)
{
  std::ifstream log(file, std::ios::binary);
  std::string line;
  Dropped dropped;
  const std::size_t count =
      std::getline(log, line) && ends(line, endOfFirstLine) ? line.find(beforeCount) : std::string::npos;
  if (count == std::string::npos)
    return dropped;
  dropped.records = std::strtoull(line.c_str() + count + beforeCount.size(), nullptr, 10);
  const std::size_t until = line.find(", the last of ", count);
  if (until != std::string::npos)
    dropped.until = line.substr(until + 14, line.find('\t', until) - until - 14);
  return dropped;
}

/// Adds the records of a log that goes.
void addRecords(const std::filesystem::path& file, Dropped& dropped)
{
  requireRegular(file);
  std::ifstream log(file, std::ios::binary);
  for (std::string line; std::getline(log, line);)
  {
    if (ends(line, endOfFirstLine))
      continue;
    ++dropped.records;
    dropped.until = oneLine(line.substr(0, std::min<std::size_t>(line.find('\t'), 32)), true);
  }
}

std::string firstLine(const std::filesystem::path& file, const Dropped& dropped)
{
  const std::time_t now = std::time(nullptr);
  std::tm parts = {};
  std::array<char, 32> text = {'-'};
  if (::gmtime_r(&now, &parts) != nullptr)
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
  std::string record = "continued from " + oneLine(olderLog(file, 1).filename().string(), true) + ", " +
                       std::string(beforeCount) + std::to_string(dropped.records) +
                       (dropped.records == 1 ? " record" : " records");
  if (dropped.records != 0)
    record += ", the last of " + dropped.until;
  return std::string(text.data()) + "\t0\t0\t0\t0\tok\t" + record + "\t-\t-" + std::string(endOfFirstLine) + "\n";
}

/// The number that is free, or the last.
std::size_t firstFree(const std::filesystem::path& file)
{
  std::size_t number = 1;
  while (number < olderLogs && isThere(olderLog(file, number)))
    ++number;
  return number;
}

/// Each name is left before another file takes it, so that a power cut leaves a gap, never a file less.
void shift(const std::filesystem::path& file)
{
  if (isThere(file))
  {
    for (std::size_t number = firstFree(file); number > 1; --number)
      renameLog(olderLog(file, number - 1), olderLog(file, number));
    renameLog(file, olderLog(file, 1));
  }
  renameLog(draftOf(file), file);
  syncFolderOf(file);
}

FileDescriptor draft(const std::filesystem::path& file, const std::string& line)
{
  FileDescriptor made(openPrivate(draftOf(file), O_RDWR | O_APPEND | O_TRUNC | O_NOFOLLOW));
  if (!made.isOpen())
    throwSystemError(draftOf(file), "cannot be made", errno);
  writeAll(made.number(), line, draftOf(file));
  if (::fsync(made.number()) != 0)
    throwSystemError(draftOf(file), "cannot be made to last", errno);
  syncFolderOf(file);
  return made;
}
} // namespace

std::filesystem::path olderLog(const std::filesystem::path& file, std::size_t number)
{
  return file.string() + "." + std::to_string(number);
}

void finishRotation(const std::filesystem::path& file)
{
  std::error_code unknown;
  if (!std::filesystem::is_regular_file(std::filesystem::symlink_status(draftOf(file), unknown)))
    return;
  // Without a gap nothing was renamed yet.
  if (isThere(file) && isThere(olderLog(file, firstFree(file))))
    std::filesystem::remove(draftOf(file));
  else
    shift(file);
}

FileDescriptor rotated(const std::filesystem::path& file)
{
  Dropped dropped = droppedBefore(file);
  const std::filesystem::path oldest = olderLog(file, olderLogs);
  if (isThere(olderLog(file, firstFree(file))))
    addRecords(oldest, dropped);
  FileDescriptor made = draft(file, firstLine(file, dropped));
  shift(file);
  return made;
}
} // namespace host
