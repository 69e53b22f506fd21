// Work in a process of its own, so that a service which ends it or never comes back ends nothing else.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "Progress.h"

namespace cli
{

struct WorkDone
{
  /// What the work answered.
  std::string text;
  /// How the process ended before the work did, in words for the operator; empty when the work was done.
  std::string trouble;
};

/// Does the work in a copy of this process, whose standard streams lead nowhere, and ends the copy without the ends of
/// anything else in it. To be called while the process has one thread; blocks until the answer is there, the copy
/// ended, or the patience did, which ends the copy as well. What the work throws, a `std::exception`, is thrown here as
/// a `StartError` of the same words.
WorkDone inOwnProcess(const std::function<std::string()>& work, std::chrono::seconds patience, Progress& progress);

} // namespace cli
