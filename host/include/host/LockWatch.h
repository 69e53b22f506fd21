// Who holds the locks of this process, for how long, and who waits for them. All of it may be asked from any thread,
// and does not wait for a lock that is held.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "host/HostExport.h"

namespace host
{
/// A thread that holds a lock or waits for it.
struct SDM_HOST_EXPORT LockUser
{
  /// The system's number of the thread.
  long thread = 0;
  /// The operation that it carries out; empty where nobody marked any.
  std::string operation;
  /// The innermost callback that this is in; empty when it is in none.
  std::string callback;
  /// How long it has been holding or waiting.
  std::chrono::milliseconds duration{0};

  /// "setData in callback setIpAddress (thread 4711)".
  std::string description() const;
};

/// One semaphore of this process.
struct SDM_HOST_EXPORT LockReport
{
  /// A thread that holds it several times is there once.
  std::vector<LockUser> holders;
  /// Those that wait for it, each once.
  std::vector<LockUser> waiters;
  /// Waits that took longer than `slowWait`, over since the semaphore was made.
  std::uint64_t slowWaits = 0;
  /// The longest wait that is over, fast ones included.
  std::chrono::milliseconds longestWait{0};
  /// Who held the semaphore when that wait began, as `LockUser::description` tells.
  std::string longestWaitBehind;
};

/// The semaphores in no particular order.
SDM_HOST_EXPORT std::vector<LockReport> lockReports();

/// A wait of more than this is logged at level 2 with who waits and who holds the lock, and again each time that it
/// took twice as long; 0 logs none. Holds for waits that begin from now on; one second at first.
SDM_HOST_EXPORT void setSlowWait(std::chrono::milliseconds limit);

/// That limit.
SDM_HOST_EXPORT std::chrono::milliseconds slowWait();
} // namespace host
