// The first failed write is remembered and told at the end.
#include "TranscriptFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "base/ReplacedFile.h"
#include "base/StartError.h"
#include "base/WholeFile.h"

namespace cli::transcript
{
namespace
{

/// The file behind links, so that it is replaced and no link.
std::filesystem::path placeOf(const std::filesystem::path& path)
{
  std::error_code unknown;
  std::filesystem::path place = std::filesystem::weakly_canonical(path, unknown);
  return unknown ? path : place;
}

bool isDevice(const std::filesystem::path& path)
{
  std::error_code unknown;
  return std::filesystem::is_character_file(path, unknown);
}

[[noreturn]] void notWritten(const std::filesystem::path& path, const std::string& why)
{
  throw StartError("the transcript " + path.string() + " cannot be written: " + why +
                   "; name another file with --record");
}

} // namespace

std::filesystem::path TranscriptFile::partOf(const std::filesystem::path& path)
{
  return path.string() + ".part";
}

TranscriptFile::TranscriptFile(const std::filesystem::path& itsPath, bool mayOverwrite)
    : path(placeOf(itsPath)),
      overwrites(mayOverwrite),
      part(isDevice(path) ? std::filesystem::path() : partOf(path)),
      file(opened())
{
}

TranscriptFile::~TranscriptFile()
{
  if (!finished && failure.empty() && !part.empty())
    ::unlink(part.c_str());
}

int TranscriptFile::opened()
{
  if (part.empty())
  {
    const int device = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (device < 0)
      notWritten(path, std::strerror(errno));
    return device;
  }
  std::error_code unknown;
  const auto status = std::filesystem::symlink_status(path, unknown);
  if (std::filesystem::is_directory(status))
    notWritten(path, std::strerror(EISDIR));
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
    notWritten(path, "it is no regular file");
  if (std::filesystem::exists(status) && !overwrites)
    notWritten(path, "it is there already; --force overwrites it");
  if (overwrites)
    ::unlink(part.c_str());
  const int made = ::open(part.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (made < 0 && errno == EEXIST)
    notWritten(path, part.string() + " is there already: another run is recording, or one was cut off; --force "
                                     "overwrites it");
  if (made < 0)
    notWritten(path, std::strerror(errno));
  // A umask may have taken something from the owner as well.
  ::fchmod(made, S_IRUSR | S_IWUSR);
  return made;
}

void TranscriptFile::write(const std::string& line)
{
  if (!failure.empty())
    return;
  size += line.size() + 1;
  if (size > largestFile && !part.empty())
    fail("it would have more than " + std::to_string(largestFile / 1024 / 1024) + " MiB, which nothing reads");
  else if (!writeAll(file.number, line + "\n"))
    fail(std::string(std::strerror(errno)) + "; make room and record again");
}

bool TranscriptFile::takePlace()
{
  if (overwrites)
    return ::rename(part.c_str(), path.c_str()) == 0;
  // A link replaces nothing that came there meanwhile. Not every file system has them.
  if (::link(part.c_str(), path.c_str()) == 0)
    return ::unlink(part.c_str()) == 0;
  if (errno == EEXIST)
    return false;
  return ::rename(part.c_str(), path.c_str()) == 0;
}

void TranscriptFile::finish()
{
  if (finished || !failure.empty())
    return;
  if (!part.empty() && (::fsync(file.number) != 0 || !takePlace() || !syncFolderOf(path)))
    fail(std::strerror(errno));
  finished = failure.empty();
}

void TranscriptFile::fail(const std::string& why)
{
  failure = "the transcript " + path.string() + " cannot be written any more, so its end is missing: " + why +
            whereItStands();
}

std::string TranscriptFile::unfinished() const
{
  return "the transcript " + path.string() + " lacks its end" + whereItStands();
}

std::string TranscriptFile::whereItStands() const
{
  return part.empty() ? "" : "; what there is stands in " + part.string();
}

} // namespace cli::transcript
