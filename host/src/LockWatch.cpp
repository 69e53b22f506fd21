// Each semaphore enters a function that reports on it; whoever asks gets the reports of all.
#include "host/LockWatch.h"

#include <atomic>
#include <map>
#include <mutex>
#include <utility>

#include "Everlasting.h"
#include "LockRegister.h"

namespace host
{
namespace
{
struct Register
{
  std::mutex mutex;
  std::map<const void*, std::function<LockReport()>> locks;
  std::atomic<std::chrono::milliseconds::rep> slowWait{1000};
};

Register& theRegister()
{
  static const Everlasting<Register> all;
  return *all;
}
} // namespace

std::string LockUser::description() const
{
  return (operation.empty() ? "an unnamed operation" : operation) +
         (callback.empty() ? "" : " in callback " + callback) + " (thread " + std::to_string(thread) + ")";
}

void enterLock(const void* lock, std::function<LockReport()> report)
{
  Register& all = theRegister();
  const std::lock_guard<std::mutex> hold(all.mutex);
  all.locks.emplace(lock, std::move(report));
}

void leaveLock(const void* lock) noexcept
{
  Register& all = theRegister();
  const std::lock_guard<std::mutex> hold(all.mutex);
  all.locks.erase(lock);
}

std::vector<LockReport> lockReports()
{
  Register& all = theRegister();
  const std::lock_guard<std::mutex> hold(all.mutex);
  std::vector<LockReport> reports;
  for (const auto& entry : all.locks)
    reports.push_back(entry.second());
  return reports;
}

void setSlowWait(std::chrono::milliseconds limit)
{
  theRegister().slowWait = limit.count();
}

std::chrono::milliseconds slowWait()
{
  return std::chrono::milliseconds(theRegister().slowWait.load());
}
} // namespace host
