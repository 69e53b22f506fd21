// Knows which callback each thread is in, so that a crash names it.
#pragma once

#include <string>

namespace cli
{

/// Says so for as long as it lives. They stand in one another as calls do; each ends on the thread that made it, the
/// last one first.
class CurrentCallback
{
public:
  /// Keeps the text, which names callback and item and is made safe to print here. No value belongs into it.
  explicit CurrentCallback(const std::string& what);
  ~CurrentCallback();
  CurrentCallback(const CurrentCallback&) = delete;
  CurrentCallback& operator=(const CurrentCallback&) = delete;

private:
  const std::string text;
  const CurrentCallback* const outer;
  friend class CrashLine;
};

/// From now on a signal that ends the program writes a line to standard error first, with the callback that the thread
/// was in. The signal then does what it did before this call. Likewise for a service that calls `exit`. Once a process.
void nameCallbackAtCrash();

} // namespace cli
