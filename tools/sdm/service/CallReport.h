// What the callbacks and the validator of a service did since the last report.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace cli
{

/// A value that a setter refused, with its reason; never the value itself.
struct SetterRefusal
{
  std::string setter;
  std::string row;
  std::string reason;
};

/// A verdict against a group.
struct GroupRefusal
{
  std::string group;
  std::string reason;
};

struct CallReport
{
  std::size_t setterCalls = 0;
  /// Calls for items of the local store with a value, not the empty text of "none held".
  std::size_t localValues = 0;
  std::size_t refused = 0;
  /// Those among the refused that were refused only because nothing would have changed.
  std::size_t repeated = 0;
  std::size_t groupsJudged = 0;
  /// Those whose last verdict was for them.
  std::set<std::string> groupsTaken;
  /// Root ids of what the validator gave to be stored.
  std::set<std::string> groupItems;
  /// The first ones in order; real refusals only, without the repeated.
  std::vector<SetterRefusal> refusals;
  std::vector<GroupRefusal> groupRefusals;
};

} // namespace cli
