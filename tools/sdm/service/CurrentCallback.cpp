// Each thread has a name for the innermost call; a handler of fatal signals writes it before the program ends.
#include "CurrentCallback.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "base/Shown.h"

namespace cli
{
namespace
{

thread_local const CurrentCallback* innermost = nullptr;

struct Fatal
{
  int number;
  const char* name;
};

constexpr std::array<Fatal, 5> fatal = {
    {{SIGABRT, "SIGABRT"}, {SIGSEGV, "SIGSEGV"}, {SIGBUS, "SIGBUS"}, {SIGFPE, "SIGFPE"}, {SIGILL, "SIGILL"}}};

/// What each signal did before, in the order of `fatal`.
std::array<struct sigaction, fatal.size()> earlier{};

/// A callback that called itself until its stack was full has none left for a handler.
std::array<char, 65536> handlerStack{};

} // namespace

/// Only calls that a handler of signals may make.
class CrashLine
{
public:
  CrashLine(const char* how, const char* name)
  {
    add("sdm: ");
    add(innermost == nullptr ? "the program" : innermost->text.c_str());
    add(innermost == nullptr ? " was ended" : " ended the program");
    add(how);
    add(name);
    add("\n");
    static_cast<void>(::write(STDERR_FILENO, line.data(), size) == 0);
  }

private:
  void add(const char* text)
  {
    const std::size_t length = std::min(std::strlen(text), line.size() - size);
    std::memcpy(line.data() + size, text, length);
    size += length;
  }

  std::array<char, 1024> line{};
  std::size_t size = 0;
};

namespace
{

void tell(int number, siginfo_t* info, void* /*context*/)
{
  for (std::size_t i = 0; i < fatal.size(); ++i)
  {
    if (fatal[i].number != number)
      continue;
    const CrashLine line(" with signal ", fatal[i].name);
    ::sigaction(number, &earlier[i], nullptr);
  }
  // A fault happens again at the same place; what somebody sent, `abort` included, does not come back by itself.
  if (info->si_code <= 0)
    static_cast<void>(std::raise(number));
}

void tellOfExit()
{
  if (innermost != nullptr)
    const CrashLine line(" by a call of ", "exit");
}

} // namespace

CurrentCallback::CurrentCallback(const std::string& what) : text(shown(what)), outer(innermost)
{
  innermost = this;
}

CurrentCallback::~CurrentCallback()
{
  innermost = outer;
}

void nameCallbackAtCrash()
{
  stack_t stack = {};
  stack.ss_sp = handlerStack.data();
  stack.ss_size = handlerStack.size();
  ::sigaltstack(&stack, nullptr);
  for (std::size_t i = 0; i < fatal.size(); ++i)
  {
    struct sigaction action = {};
    action.sa_sigaction = tell;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    ::sigaction(fatal[i].number, &action, &earlier[i]);
  }
  std::atexit(tellOfExit);
}

} // namespace cli
