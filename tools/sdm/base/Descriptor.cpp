// A write goes on after a signal and after a short write.
#include "Descriptor.h"

#include <cerrno>
#include <unistd.h>

namespace cli
{

Descriptor::~Descriptor()
{
  if (number >= 0)
    ::close(number);
}

bool writeAll(int descriptor, const std::string& content)
{
  for (std::size_t done = 0; done < content.size();)
  {
    const ssize_t written = ::write(descriptor, content.data() + done, content.size() - done);
    if (written < 0 && errno != EINTR)
      return false;
    done += written < 0 ? 0 : static_cast<std::size_t>(written);
  }
  return true;
}

} // namespace cli
