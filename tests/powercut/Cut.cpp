#include "Cut.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace powercut
{
namespace
{
std::string setting(const char* name)
{
  const char* text = std::getenv(name);
  return text == nullptr ? "" : text;
}

bool endsWith(const std::string& text, const std::string& end)
{
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}
} // namespace

Plan::Plan() : folder(setting("CUT_FOLDER")), countFile(setting("CUT_COUNT"))
{
  at = std::atol(setting("CUT_AT").c_str());
  reach = setting("CUT_REACH") == "half" ? Reach::half : setting("CUT_REACH") == "after" ? Reach::after : Reach::before;
  const std::string wanted = setting("CUT_LOSS");
  loss = wanted.empty() || wanted == "none" ? Loss::none : wanted == "all" ? Loss::all : Loss::some;
  if (loss == Loss::some)
    seed = std::strtoull(wanted.substr(wanted.find(':') + 1).c_str(), nullptr, 10);
  failure = std::atoi(setting("CUT_FAIL").c_str());
  if (!setting("CUT_FAIL_AT").empty())
    failsFrom = std::atol(setting("CUT_FAIL_AT").c_str());
}

bool Plan::watches(const std::string& path) const
{
  return !folder.empty() && path.rfind(folder, 0) == 0 && !endsWith(path, "-shm") && !endsWith(path, " (deleted)");
}

long Plan::carryOut(const char* kind, const std::string& path, const std::function<void()>& note,
                    const std::function<long()>& call, const std::function<long()>& half)
{
  const bool isHere = ++calls == at;
  count(kind, path);
  if (isHere && reach == Reach::before)
    cut();
  if (calls >= failsFrom && refuses(kind))
  {
    errno = failure;
    return -1;
  }
  const bool syncs = std::strcmp(kind, "sync") == 0;
  if (!syncs)
    note();
  if (isHere && half && reach == Reach::half)
  {
    half();
    cut();
  }
  const long result = call();
  if (syncs && result == 0)
    note();
  if (isHere)
    cut();
  return result;
}

bool Plan::refuses(const std::string& kind) const
{
  if (failure == ENOSPC)
    return kind == "write" || kind == "create" || kind == "mkdir" || kind == "link";
  return failure != 0 && kind != "sync";
}

bool Plan::refusesStream(const std::string& path) const
{
  if (!watches(path) || calls < failsFrom - 1 || !refuses("stream"))
    return false;
  errno = failure;
  return true;
}

void Plan::cut()
{
  disk.lose(loss, seed);
  ::kill(::getpid(), SIGKILL);
  for (;;)
    ::pause();
}

void Plan::count(const char* kind, const std::string& path)
{
  if (countFile.empty())
    return;
  const int file =
      static_cast<int>(::syscall(SYS_openat, AT_FDCWD, countFile.c_str(), O_WRONLY | O_APPEND | O_CREAT, 0600));
  const std::string line = std::string(kind) + " " + path.substr(folder.size()) + "\n";
  if (::syscall(SYS_write, file, line.data(), line.size()) < 0)
    std::abort();
  ::syscall(SYS_close, file);
}

Plan& plan()
{
  // Never destroyed: files are written until the process is gone.
  static Plan* const thePlan = new Plan();
  return *thePlan;
}
} // namespace powercut
