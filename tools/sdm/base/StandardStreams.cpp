// Makes sure that all three are open before a file takes their number, and checks the last flush.
#include "StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <iostream>

namespace cli
{

void holdStandardDescriptors()
{
  // In this order, since the lowest free number is the one that `open` takes.
  for (const int descriptor : std::array{STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
  {
    if (::fcntl(descriptor, F_GETFD) == -1)
      static_cast<void>(::open("/dev/null", O_RDWR));
  }
}

void reportFileSizeLimit()
{
  std::signal(SIGXFSZ, SIG_IGN);
}

bool finishOutput()
{
  if (std::cout.flush())
    return true;
  std::cerr << "sdm: standard output cannot be written, so some of it is lost\n";
  return false;
}

} // namespace cli
