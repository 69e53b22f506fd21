// What each thread is about just now, told by those who know: which operation runs, and which callback it is in.
#pragma once

#include <chrono>
#include <string>

#include "host/HostExport.h"

namespace host
{
/// What a mark stands for.
enum class MarkKind
{
  operation, ///< of the service that runs on this platform
  callback   ///< whatever an operation calls and waits for: its duration is counted under its name
};

/// Says, for as long as it lives, what its thread does. Marks stand in one another as calls do; each ends on the thread
/// that made it, the last one first. Names are for operators, so no value belongs into one.
class SDM_HOST_EXPORT Mark
{
public:
  /// Begins. Keeps a copy of the name.
  [[nodiscard]] Mark(MarkKind markKind, const std::string& markName);
  /// Ends, and counts a callback in `callTimes`.
  ~Mark();
  Mark(const Mark&) = delete;
  Mark& operator=(const Mark&) = delete;

private:
  const MarkKind kind;
  const std::chrono::steady_clock::time_point began;
};
} // namespace host
