// What happened in the callbacks since somebody last asked: where the manager drops a result, it is kept here.
#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

namespace commsservice
{

/// A value that a setter refused, with its reason; never the value itself.
struct SetterRefusal
{
  std::string setting;
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
  /// Calls of settings that live in the local store with a value, not the empty text of "none held".
  std::size_t localValues = 0;
  std::size_t refused = 0;
  /// Those among the refused that were refused only because nothing would have changed.
  std::size_t repeated = 0;
  std::size_t groupsJudged = 0;
  /// The first ones in order; real refusals only, without the repeated.
  std::vector<SetterRefusal> refusals;
  std::vector<GroupRefusal> groupRefusals;
};

/// May be used from any thread.
class CallLog
{
public:
  void setterCalled(bool withLocalValue);
  void repeated();
  void refused(SetterRefusal refusal);
  void judged(const std::string& group, const std::string& refusal);

  /// What was noted since the last `take`.
  CallReport take();

private:
  /// A service that nobody asks must not grow.
  static constexpr std::size_t mostKept = 500;

  std::mutex mutex;
  CallReport report;
};

} // namespace commsservice
