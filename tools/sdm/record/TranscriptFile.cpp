#include "record/TranscriptFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "StartError.h"

namespace cli::record
{

TranscriptFile::TranscriptFile(const std::filesystem::path& file)
    : path(file), descriptor(::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600))
{
  if (descriptor < 0)
    throw StartError("the transcript " + path.string() + " cannot be written: " + std::strerror(errno) +
                     "; name another file with --record");
}

TranscriptFile::~TranscriptFile()
{
  ::close(descriptor);
}

void TranscriptFile::write(const std::string& line)
{
  const std::string bytes = line + "\n";
  for (std::size_t done = 0; failure.empty() && done < bytes.size();)
  {
    const ssize_t written = ::write(descriptor, bytes.data() + done, bytes.size() - done);
    if (written < 0 && errno != EINTR)
      fail(errno);
    done += written < 0 ? 0 : static_cast<std::size_t>(written);
  }
}

void TranscriptFile::fail(int reason)
{
  failure = "the transcript " + path.string() +
            " cannot be written any more, so its end is missing: " + std::strerror(reason) +
            "; make room and record again";
}

} // namespace cli::record
