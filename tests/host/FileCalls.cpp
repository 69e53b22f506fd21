#include "FileCalls.h"

#include "SyncCounter.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <mutex>
#include <thread>
#include <utility>

namespace
{
struct Notes
{
  std::mutex mutex;
  bool wanted = false;
  std::vector<std::string> calls;
  std::function<void()> next;
};

Notes& notes()
{
  static auto* const all = new Notes;
  return *all;
}

std::atomic<bool> stingy{false};
thread_local bool interrupted = false;
thread_local std::function<void()> behindByte;
std::function<void()> inPlaceOfSleep;

void note(const std::string& call)
{
  std::function<void()> action;
  {
    const std::lock_guard<std::mutex> lock(notes().mutex);
    if (!notes().wanted)
      return;
    notes().calls.push_back(call);
    action = std::exchange(notes().next, nullptr);
  }
  if (action)
    action();
}

std::string nameOf(int descriptor)
{
  std::string name(PATH_MAX, '\0');
  const ssize_t size = ::readlink(("/proc/self/fd/" + std::to_string(descriptor)).c_str(), name.data(), name.size());
  name.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
  return name;
}
} // namespace

extern "C" __attribute__((visibility("default"))) int rename(const char* from, const char* to)
{
  note(std::string("rename ") + from + " " + to);
  return static_cast<int>(::syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

extern "C" __attribute__((visibility("default"))) int renameat2(int fromFolder, const char* from, int toFolder,
                                                                const char* to, unsigned int flags)
{
  note(std::string("rename ") + from + " " + to);
  return static_cast<int>(::syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

extern "C" __attribute__((visibility("default"))) int link(const char* from, const char* to)
{
  note(std::string("link ") + to);
  return static_cast<int>(::syscall(SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0));
}

extern "C" __attribute__((visibility("default"))) ssize_t write(int descriptor, const void* bytes, size_t count)
{
  if (!stingy || count == 0)
    return ::syscall(SYS_write, descriptor, bytes, count);
  interrupted = !interrupted;
  std::this_thread::yield();
  if (!interrupted)
  {
    const ssize_t taken = ::syscall(SYS_write, descriptor, bytes, 1);
    if (const auto action = std::exchange(behindByte, nullptr))
      action();
    return taken;
  }
  errno = EINTR;
  return -1;
}

extern "C" __attribute__((visibility("default"))) int usleep(useconds_t microseconds)
{
  if (inPlaceOfSleep)
  {
    inPlaceOfSleep();
    return 0;
  }
  const timespec time = {static_cast<time_t>(microseconds / 1000000), static_cast<long>(microseconds % 1000000) * 1000};
  return ::nanosleep(&time, nullptr);
}

void hosttest::noteSync(int descriptor)
{
  note("sync " + nameOf(descriptor));
}

hosttest::FileCalls::FileCalls()
{
  const std::lock_guard<std::mutex> lock(notes().mutex);
  notes().wanted = true;
}

hosttest::FileCalls::~FileCalls()
{
  const std::lock_guard<std::mutex> lock(notes().mutex);
  notes().wanted = false;
  notes().calls.clear();
  notes().next = nullptr;
}

std::vector<std::string> hosttest::FileCalls::noted() const
{
  const std::lock_guard<std::mutex> lock(notes().mutex);
  return notes().calls;
}

void hosttest::FileCalls::atTheNext(std::function<void()> action)
{
  const std::lock_guard<std::mutex> lock(notes().mutex);
  notes().next = std::move(action);
}

hosttest::StingyWrites::StingyWrites()
{
  stingy = true;
}

hosttest::StingyWrites::~StingyWrites()
{
  stingy = false;
  behindByte = nullptr;
}

void hosttest::StingyWrites::behindTheNextByte(std::function<void()> action)
{
  behindByte = std::move(action);
}

hosttest::InPlaceOfSleep::InPlaceOfSleep(std::function<void()> action)
{
  inPlaceOfSleep = std::move(action);
}

hosttest::InPlaceOfSleep::~InPlaceOfSleep()
{
  inPlaceOfSleep = nullptr;
}
