// What another thread does at a chosen moment of this one: as much as the locks let it.
//
// Stands in for the C library's functions in the whole test program.
#pragma once

#include <functional>
#include <thread>

namespace hosttest
{
/// Runs an action in a thread of its own, which is joined at the end.
class Meanwhile
{
public:
  Meanwhile() = default;
  ~Meanwhile();
  Meanwhile(const Meanwhile&) = delete;
  Meanwhile& operator=(const Meanwhile&) = delete;

  /// Starts the action, and returns when it is done or waits for something.
  void runs(std::function<void()> action);
  /// Waits for the action's end.
  void join();

private:
  std::thread thread;
};

/// While it lives, `action` runs once, behind the unlocking of a mutex by this thread that comes `count` unlockings
/// after the first sync of a file.
class BehindUnlocking
{
public:
  BehindUnlocking(int count, std::function<void()> action);
  ~BehindUnlocking();
  BehindUnlocking(const BehindUnlocking&) = delete;
  BehindUnlocking& operator=(const BehindUnlocking&) = delete;

  /// Whether it came to the action.
  bool happened() const;
};
} // namespace hosttest
