// When the power goes, or the disk begins to fail: counted in calls that change the disk.
#pragma once

#include <functional>
#include <string>

#include "Disk.h"

namespace powercut
{
/// How far the call gets at which the power goes.
enum class Reach
{
  before,
  half,
  after
};

/// What the environment asks for:
///   CUT_FOLDER  what is watched, links resolved
///   CUT_AT      the number of the call at which the process is killed; 0 or nothing for none
///   CUT_REACH   before, half or after
///   CUT_LOSS    none, all, or some:SEED
///   CUT_COUNT   a file that gets one line for each call: what it is and its file
///   CUT_FAIL    the number of an error, such as that of a full disk, which every call gets from CUT_FAIL_AT on
class Plan
{
public:
  Plan();

  /// True for files in the watched folder. The memory that database connections share is none that lasts.
  bool watches(const std::string& path) const;

  /// Runs a call that changes `path`: `note` tells the disk of it, `call` carries it out, `half` a half of it. Returns
  /// what the call returns, with `errno`.
  long carryOut(const char* kind, const std::string& path, const std::function<void()>& note,
                const std::function<long()>& call, const std::function<long()>& half = nullptr);

  /// True, with `errno`, when a stream to a file of this path cannot be opened for writing.
  bool refusesStream(const std::string& path) const;

  Disk disk;

private:
  /// A full disk takes no more bytes and names; one that cannot be written takes no change at all.
  bool refuses(const std::string& kind) const;
  [[noreturn]] void cut();
  void count(const char* kind, const std::string& path);

  std::string folder;
  long at = 0;
  Reach reach = Reach::before;
  Loss loss = Loss::none;
  std::uint64_t seed = 0;
  std::string countFile;
  int failure = 0;
  long failsFrom = 1;
  long calls = 0;
};

Plan& plan();
} // namespace powercut
