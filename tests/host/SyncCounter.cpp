// Stands in for the C library's functions in the whole test program.
#include "SyncCounter.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace
{
std::atomic<int> calls{0};
std::atomic<bool> failing{false};
std::atomic<int> goodOnesLeft{0};

int counted(long number, int descriptor)
{
  ++calls;
  hosttest::noteSync(descriptor);
  if (failing && goodOnesLeft-- <= 0)
  {
    errno = EIO;
    return -1;
  }
  return static_cast<int>(::syscall(number, descriptor));
}
} // namespace

extern "C" __attribute__((visibility("default"))) int fsync(int descriptor)
{
  return counted(SYS_fsync, descriptor);
}

extern "C" __attribute__((visibility("default"))) int fdatasync(int descriptor)
{
  return counted(SYS_fdatasync, descriptor);
}

int hosttest::syncCount()
{
  return calls;
}

hosttest::FailingSync::FailingSync(int goodOnes)
{
  goodOnesLeft = goodOnes;
  failing = true;
}

hosttest::FailingSync::~FailingSync()
{
  failing = false;
}

bool hosttest::FailingSync::happened() const
{
  return goodOnesLeft < 0;
}
