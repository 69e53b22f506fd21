// The marks of a thread are a stack, which other threads may read.
#include "host/Marks.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>

#include "Activity.h"
#include "CallCounts.h"
#include "Everlasting.h"

namespace host
{
Activity::Activity() : thread(::syscall(SYS_gettid))
{
}

void Activity::begin(MarkKind kind, const std::string& name)
{
  const std::lock_guard<std::mutex> lock(mutex);
  marks.emplace_back(kind, name);
}

std::string Activity::end() noexcept
{
  const std::lock_guard<std::mutex> lock(mutex);
  // A callback that calls `exit` takes its thread's marks down behind the activity that they were made for.
  if (marks.empty())
    return "";
  std::string name = std::move(marks.back().second);
  marks.pop_back();
  return name;
}

LockUser Activity::user() const
{
  const std::lock_guard<std::mutex> lock(mutex);
  LockUser user;
  user.thread = thread;
  const auto isA = [](MarkKind kind) { return [kind](const auto& mark) { return mark.first == kind; }; };
  const auto operation = std::find_if(marks.begin(), marks.end(), isA(MarkKind::operation));
  const auto callback = std::find_if(marks.rbegin(), marks.rend(), isA(MarkKind::callback));
  if (operation != marks.end())
    user.operation = operation->second;
  if (callback != marks.rend())
    user.callback = callback->second;
  return user;
}

namespace
{
/// Whether the thread has given up its own activity, which it does before static objects go away.
thread_local bool ended = false;

struct Own
{
  Own() = default;
  ~Own()
  {
    ended = true;
  }
  Own(const Own&) = delete;
  Own& operator=(const Own&) = delete;

  const std::shared_ptr<Activity> activity = std::make_shared<Activity>();
};

const std::shared_ptr<Activity>& lateActivity()
{
  static thread_local const Everlasting<std::shared_ptr<Activity>> late(std::make_shared<Activity>());
  return *late;
}
} // namespace

std::shared_ptr<Activity> currentActivity()
{
  if (ended)
    return lateActivity();
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wexit-time-destructors" // Goes away with its thread, and says so: see `ended`.
#endif
  static thread_local const Own own;
#ifdef __clang__
#pragma clang diagnostic pop
#endif
  return own.activity;
}

Mark::Mark(MarkKind markKind, const std::string& markName) : kind(markKind), began(std::chrono::steady_clock::now())
{
  currentActivity()->begin(kind, markName);
}

Mark::~Mark()
{
  const std::string name = currentActivity()->end();
  if (kind == MarkKind::callback && !name.empty())
    countCall(name, std::chrono::steady_clock::now() - began);
}
} // namespace host
