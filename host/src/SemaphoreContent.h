// The state of a semaphore and what its holders do to it.
#pragma once

#include <Semaphore.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <unordered_map>

#include "Activity.h"
#include "host/LockWatch.h"

struct Semaphore::Content
{
  Content(int initial, bool isReentrant);
  ~Content();
  Content(const Content&) = delete;
  Content& operator=(const Content&) = delete;

  void take();
  void giveBack() noexcept;
  host::LockReport report() const;

private:
  using Clock = std::chrono::steady_clock;

  /// A thread that holds units or waits for one.
  struct User
  {
    /// How often it holds: of a re-entrant semaphore that is one unit all the same.
    int holds = 0;
    Clock::time_point holdingSince;
    std::optional<Clock::time_point> waitingSince;
    std::shared_ptr<host::Activity> activity;
  };

  void wait(std::unique_lock<std::mutex>& lock, User& own);
  void logSlowWait(std::unique_lock<std::mutex>& lock, const User& own) noexcept;
  /// Who holds it, and for how long when a time is given.
  std::string holders(std::optional<Clock::time_point> now) const;

  const bool reentrant;
  mutable std::mutex mutex;
  std::condition_variable unitFree;
  int available;
  std::unordered_map<std::thread::id, User> users;
  host::LockReport past;
};
