#include "host/Marks.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>

#include "Activity.h"
#include "CallCounts.h"

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

std::shared_ptr<Activity> currentActivity()
{
  static thread_local const std::shared_ptr<Activity> mine = std::make_shared<Activity>();
  return mine;
}

Mark::Mark(MarkKind markKind, const std::string& markName) : kind(markKind), began(std::chrono::steady_clock::now())
{
  currentActivity()->begin(kind, markName);
}

Mark::~Mark()
{
  const std::string name = currentActivity()->end();
  if (kind == MarkKind::callback)
    countCall(name, std::chrono::steady_clock::now() - began);
}
} // namespace host
