#include "Meanwhile.h"

#include "SyncCounter.h"

#include <dlfcn.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <memory>
#include <string>
#include <utility>

namespace
{
struct Plan
{
  int syncsBefore = 0;
  int unlockingsLeft = 0;
  std::function<void()> action;
};

thread_local Plan* plan = nullptr;

/// A thread that sleeps waits for a lock, since the actions of these tests wait for nothing else.
bool sleeps(pid_t thread)
{
  std::ifstream status("/proc/self/task/" + std::to_string(thread) + "/stat");
  std::string text;
  std::getline(status, text);
  const std::size_t end = text.rfind(") ");
  return end != std::string::npos && text.compare(end, 3, ") S") == 0;
}
} // namespace

extern "C" __attribute__((visibility("default"))) int pthread_mutex_unlock(pthread_mutex_t* mutex)
{
  using Unlock = int (*)(pthread_mutex_t*);
  static const auto real = reinterpret_cast<Unlock>(::dlsym(RTLD_NEXT, "pthread_mutex_unlock"));
  const int result = real(mutex);
  if (plan != nullptr && plan->action && hosttest::syncCount() > plan->syncsBefore && plan->unlockingsLeft-- == 0)
    std::exchange(plan->action, nullptr)();
  return result;
}

hosttest::Meanwhile::~Meanwhile()
{
  join();
}

void hosttest::Meanwhile::runs(std::function<void()> action)
{
  std::atomic<pid_t> number{0};
  const auto done = std::make_shared<std::atomic<bool>>(false);
  thread = std::thread(
      [&number, done, action = std::move(action)]
      {
        number = static_cast<pid_t>(::syscall(SYS_gettid));
        action();
        *done = true;
      });
  while (number == 0)
    std::this_thread::yield();
  while (!*done && !sleeps(number))
    std::this_thread::yield();
}

void hosttest::Meanwhile::join()
{
  if (thread.joinable())
    thread.join();
}

hosttest::BehindUnlocking::BehindUnlocking(int count, std::function<void()> action)
{
  plan = new Plan{syncCount(), count, std::move(action)};
}

hosttest::BehindUnlocking::~BehindUnlocking()
{
  delete std::exchange(plan, nullptr);
}

bool hosttest::BehindUnlocking::happened() const
{
  return !plan->action;
}
