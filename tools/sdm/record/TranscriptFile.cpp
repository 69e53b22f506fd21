#include "record/TranscriptFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>

#include "StartError.h"

namespace cli::record
{

TranscriptFile::TranscriptFile(const std::filesystem::path& itsPath)
    : path(itsPath), file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600))
{
  if (file.number < 0)
    throw StartError("the transcript " + path.string() + " cannot be written: " + std::strerror(errno) +
                     "; name another file with --record");
}

void TranscriptFile::write(const std::string& line)
{
  if (failure.empty() && !writeAll(file.number, line + "\n"))
    fail(errno);
}

void TranscriptFile::fail(int reason)
{
  failure = "the transcript " + path.string() +
            " cannot be written any more, so its end is missing: " + std::strerror(reason) +
            "; make room and record again";
}

} // namespace cli::record
