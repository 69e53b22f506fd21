// The lock, with an account of who holds it.
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

#include <CriticalSection.h>
#include <Semaphore.h>

#include "Trace.h"

struct Semaphore::Content
{
  std::mutex mutex;
  std::condition_variable freed;
  int free = 0;
  bool reentrant = false;
  std::map<std::thread::id, int> holds;
};

Semaphore::Semaphore(int initial, int maximum, bool reentrant) : content(std::make_unique<Content>())
{
  recording::note("Semaphore(" + std::to_string(initial) + ", " + std::to_string(maximum) + ", " +
                  (reentrant ? "true" : "false") + ")");
  content->free = initial;
  content->reentrant = reentrant;
}

Semaphore::~Semaphore() = default;

CriticalSection::CriticalSection(Semaphore& taken) : semaphore(taken)
{
  recording::called("CriticalSection");
  Semaphore::Content& content = *semaphore.content;
  std::unique_lock<std::mutex> lock(content.mutex);
  int& held = content.holds[std::this_thread::get_id()];
  if (!content.reentrant || held == 0)
  {
    content.freed.wait(lock, [&] { return content.free > 0; });
    --content.free;
  }
  ++held;
  ++recording::behaviour().lockDepth;
  if (recording::behaviour().traceLock)
    recording::note("lock");
}

CriticalSection::~CriticalSection()
{
  Semaphore::Content& content = *semaphore.content;
  const std::lock_guard<std::mutex> lock(content.mutex);
  const auto held = content.holds.find(std::this_thread::get_id());
  if (--held->second == 0)
    content.holds.erase(held);
  if (!content.reentrant || content.holds.count(std::this_thread::get_id()) == 0)
  {
    ++content.free;
    content.freed.notify_one();
  }
  --recording::behaviour().lockDepth;
  if (recording::behaviour().traceLock)
    recording::note("unlock");
}
