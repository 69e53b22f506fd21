// Runs work in a child process. A service that crashes or hangs then ends that process only.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "Progress.h"

namespace cli
{

/// Hands a text of any bytes over to the process that waits.
using Tell = std::function<void(const std::string& text)>;

/// How a process ended.
struct WorkEnd
{
  enum class Kind
  {
    done, ///< the work was done to its end
    died, ///< the process ended in the middle of it
    hung  ///< nothing came within the patience, so the process was ended
  };

  Kind kind = Kind::done;
  /// In words for the operator; empty when the work was done.
  std::string how;
};

/// Where the standard output and error of such a process go; its standard input is empty.
enum class Output
{
  nowhere,
  standardError
};

/// Does the work in a copy of this process, and ends the copy without the ends of anything else in it. `heard` gets
/// each text that the work tells, in its order. Each text has to come within `patience` of the one before, or of the
/// beginning. To be called while the process has one thread; blocks until the work is done, the copy ended, or the
/// patience did, which ends the copy as well. What the work throws is thrown here as a `StartError` of the same words.
[[nodiscard]] WorkEnd inOwnProcess(const std::function<void(const Tell& tell)>& work, const Tell& heard, Output output,
                                   std::chrono::seconds patience, Progress& progress);

struct WorkDone
{
  /// What the work answered.
  std::string text;
  /// How the process ended before the work did, in words for the operator; empty when the work was done.
  std::string trouble;
};

/// The same for work with one answer, whose output goes nowhere.
[[nodiscard]] WorkDone inOwnProcess(const std::function<std::string()>& work, std::chrono::seconds patience,
                                    Progress& progress);

} // namespace cli
