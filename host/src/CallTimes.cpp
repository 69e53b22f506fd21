// One account a name, under one lock. What cannot be counted for want of memory is left out: the call itself goes on.
#include "host/CallTimes.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <new>

#include "CallCounts.h"
#include "Everlasting.h"

namespace host
{
namespace
{
/// A service that makes up names must not make its process grow.
constexpr std::size_t mostNames = 10000;
constexpr const char* othersName = "(others)";

struct Counts
{
  std::mutex mutex;
  std::map<std::string, CallTime> byName;
};

Counts& counts()
{
  static const Everlasting<Counts> all;
  return *all;
}
} // namespace

void countCall(const std::string& name, std::chrono::steady_clock::duration took) noexcept
{
  try
  {
    const auto duration = std::chrono::duration_cast<std::chrono::microseconds>(took);
    const auto* const bound = std::upper_bound(callTimeBounds.begin(), callTimeBounds.end(), duration);
    const std::lock_guard<std::mutex> lock(counts().mutex);
    std::map<std::string, CallTime>& byName = counts().byName;
    const bool isKnown = byName.size() < mostNames || byName.count(name) != 0;
    CallTime& time = byName[isKnown ? name : othersName];
    ++time.calls;
    time.total += duration;
    time.longest = std::max(time.longest, duration);
    ++time.histogram[static_cast<std::size_t>(bound - callTimeBounds.begin())];
  }
  catch (const std::bad_alloc&)
  {
    // The operation matters more than its account.
  }
}

std::vector<CallTime> callTimes()
{
  std::vector<CallTime> times;
  {
    const std::lock_guard<std::mutex> lock(counts().mutex);
    for (const auto& [name, time] : counts().byName)
    {
      times.push_back(time);
      times.back().name = name;
    }
  }
  std::stable_sort(times.begin(), times.end(),
                   [](const CallTime& lhs, const CallTime& rhs) { return lhs.total > rhs.total; });
  return times;
}

void forgetCallTimes()
{
  const std::lock_guard<std::mutex> lock(counts().mutex);
  counts().byName.clear();
}
} // namespace host
