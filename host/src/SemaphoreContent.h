// The state of a semaphore and what its holders do to it.
#pragma once

#include <Semaphore.h>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <unordered_map>

struct Semaphore::Content
{
  Content(int initial, bool isReentrant) : reentrant(isReentrant), available(initial)
  {
  }

  void take();
  void giveBack() noexcept;

private:
  const bool reentrant;
  std::mutex mutex;
  std::condition_variable unitFree;
  int available;
  /// Re-entrant only: how often each thread took its one unit.
  std::unordered_map<std::thread::id, int> holds;
};
