// Units are counted under a mutex of their own, with who holds and who waits, so that a long wait can name both.
#include <Semaphore.h>

#include <logAppUni.h>

#include <algorithm>
#include <exception>
#include <stdexcept>

#include "LockRegister.h"
#include "SemaphoreContent.h"

namespace
{
std::chrono::milliseconds milliseconds(std::chrono::steady_clock::duration duration)
{
  return std::chrono::duration_cast<std::chrono::milliseconds>(duration);
}
} // namespace

Semaphore::Semaphore(int initial, int maximum, bool reentrant)
{
  if (initial < 0 || maximum < 1 || initial > maximum)
    throw std::invalid_argument("a semaphore begins with 0 to all of its units, and has at least one");
  content = std::make_unique<Content>(initial, reentrant);
}

Semaphore::~Semaphore() = default;

Semaphore::Content::Content(int initial, bool isReentrant) : reentrant(isReentrant), available(initial)
{
  host::enterLock(this, [this] { return report(); });
}

Semaphore::Content::~Content()
{
  host::leaveLock(this);
}

void Semaphore::Content::take()
{
  auto activity = host::currentActivity();
  std::unique_lock<std::mutex> lock(mutex);
  // The entry comes first: once the unit is taken nothing may fail any more.
  User& own = users[std::this_thread::get_id()];
  if (reentrant && own.holds > 0)
  {
    ++own.holds;
    return;
  }
  own.activity = std::move(activity);
  if (available == 0)
    wait(lock, own);
  --available;
  if (++own.holds == 1)
    own.holdingSince = Clock::now();
}

void Semaphore::Content::wait(std::unique_lock<std::mutex>& lock, User& own)
{
  const Clock::time_point began = Clock::now();
  std::string behind = holders(std::nullopt);
  own.waitingSince = began;
  const std::chrono::milliseconds limit = host::slowWait();
  const auto isFree = [this] { return available > 0; };
  if (limit.count() > 0)
  {
    auto next = limit;
    for (; !unitFree.wait_until(lock, began + next, isFree); next *= 2)
      logSlowWait(lock, own);
    if (next > limit)
      ++past.slowWaits;
  }
  unitFree.wait(lock, isFree);
  own.waitingSince.reset();
  const auto took = milliseconds(Clock::now() - began);
  if (took > past.longestWait)
  {
    past.longestWait = took;
    past.longestWaitBehind.swap(behind);
  }
}

/// Writes without the semaphore's own mutex, so that the log delays nobody but the one who waits.
void Semaphore::Content::logSlowWait(std::unique_lock<std::mutex>& lock, const User& own) noexcept
{
  try
  {
    const Clock::time_point now = Clock::now();
    const std::string waiter = own.activity->user().description();
    const std::string held = holders(now);
    const auto waited = static_cast<long long>(milliseconds(now - *own.waitingSince).count());
    lock.unlock();
    logAppUni("LockWatch", "host/src/Semaphore.cpp", 2, __LINE__, "%s has waited %lld ms for the lock, held by %s",
              waiter.c_str(), waited, held.c_str());
  }
  catch (const std::exception&)
  {
    // Waiting is what matters.
  }
  if (!lock.owns_lock())
    lock.lock();
}

std::string Semaphore::Content::holders(std::optional<Clock::time_point> now) const
{
  std::string text;
  for (const auto& entry : users)
  {
    if (entry.second.holds == 0)
      continue;
    text += (text.empty() ? "" : " and ") + entry.second.activity->user().description();
    if (now)
      text += " for " + std::to_string(milliseconds(*now - entry.second.holdingSince).count()) + " ms";
  }
  return text.empty() ? "nobody" : text;
}

host::LockReport Semaphore::Content::report() const
{
  const std::lock_guard<std::mutex> lock(mutex);
  host::LockReport report = past;
  const Clock::time_point now = Clock::now();
  for (const auto& entry : users)
  {
    const User& user = entry.second;
    host::LockUser told = user.activity->user();
    if (user.holds > 0)
    {
      told.duration = milliseconds(now - user.holdingSince);
      report.holders.push_back(told);
    }
    if (user.waitingSince)
    {
      told.duration = milliseconds(now - *user.waitingSince);
      report.waiters.push_back(told);
    }
  }
  return report;
}

void Semaphore::Content::giveBack() noexcept
{
  const std::lock_guard<std::mutex> lock(mutex);
  const auto own = users.find(std::this_thread::get_id());
  if (--own->second.holds > 0 && reentrant)
    return;
  if (own->second.holds == 0)
    users.erase(own);
  ++available;
  unitFree.notify_one();
}
