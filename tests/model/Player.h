// Plays a life on a manager and tells all that could be seen of it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Life.h"

class ServiceDataManagerIfc;

namespace judge
{

/// A manager to play on.
struct Candidate
{
  std::shared_ptr<ServiceDataManagerIfc> manager;
  /// Not in the interface.
  std::function<bool(const std::string&)> isItemManaged;
};

/// Log lines, calls of the platform and callbacks, results and rejects, in order: one list for each step, the first one
/// for the construction and the last one for the end.
using Trace = std::vector<std::vector<std::string>>;

/// Runs in the working directory, where it writes the item map.
Trace play(const Life& life, const std::function<Candidate()>& make);

} // namespace judge
