// What one thread is about, readable by the others.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "host/LockWatch.h"
#include "host/Marks.h"

namespace host
{
class Activity
{
public:
  Activity();

  void begin(MarkKind kind, const std::string& name);
  /// Ends the last one and returns its name.
  std::string end() noexcept;

  /// The operation furthest out, since that is the one that took the lock, and the callback furthest in.
  LockUser user() const;

private:
  const long thread;
  mutable std::mutex mutex;
  std::vector<std::pair<MarkKind, std::string>> marks;
};

/// This thread's own; it may outlive the thread with whoever else keeps it.
std::shared_ptr<Activity> currentActivity();
} // namespace host
