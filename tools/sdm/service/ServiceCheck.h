// Tries a service with its item map, on a temporary device.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "base/Progress.h"

namespace cli
{

struct ServiceFinding
{
  /// The item; of a finding about a group its first member. Empty for one about the service as a whole.
  std::string rootId;
  /// One of those below.
  std::string rule;
  /// A sentence, safe to print and without values of secrets.
  std::string text;
};

/// The rules, in no order:
/// - `unresolved-setter`, `unresolved-getter`: the map names a callback that the service does not register
/// - `unused-setter`, `unused-getter`: the service registers a callback that no line of the map names
/// - `default-refused`, `alternative-refused`: a setter does not take what the map would give it
/// - `default-differs`, `alternative-differs`: the getter answers something else than the setter took
/// - `group-default-refused`, `group-alternative-refused`: the validator does not accept a group of defaults, or of the
///   alternative defaults where there are such
/// - `group-item-missing`, `group-item-unknown`: the validator accepts a group, and does not list a member of it among
///   what is to be written, or lists what is no member
/// - `no-validator`: the map has a group and the service no validator
/// - `setter-throws`, `getter-throws`, `validator-throws`, `start-throws`: where an exception comes from
/// - `crash`, `hang`: the service ended the process, or did not come back within `patience`; the rest was not tried
///
/// The service runs in a process of its own, whose standard output goes to standard error. To be called while the
/// calling process has one thread. Throws `StartError` when the service cannot be loaded, or the map not be read.
std::vector<ServiceFinding> checkService(const std::filesystem::path& service, const std::filesystem::path& map,
                                         Progress& progress, std::chrono::seconds patience = std::chrono::seconds(30));

} // namespace cli
