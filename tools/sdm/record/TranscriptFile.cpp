#include "record/TranscriptFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>

#include "StartError.h"
#include "host/PrivateFiles.h"

namespace cli::record
{

TranscriptFile::TranscriptFile(const std::filesystem::path& itsPath)
    : path(itsPath), file(host::openPrivate(path, O_WRONLY | O_TRUNC))
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
