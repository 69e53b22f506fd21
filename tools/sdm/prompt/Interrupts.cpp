// The signal is blocked in all threads and read from a descriptor by one thread.
#include "Interrupts.h"

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <utility>

#include "base/Shown.h"
#include "base/Subcommand.h"
#include "host/LockWatch.h"

namespace cli
{
namespace
{

sigset_t interruptAlone()
{
  sigset_t set;
  ::sigemptyset(&set);
  ::sigaddset(&set, SIGINT);
  return set;
}

/// Keeps the signal away from this thread and those it makes, and reads it from a descriptor instead.
int taken(sigset_t& before)
{
  const sigset_t interrupt = interruptAlone();
  ::pthread_sigmask(SIG_BLOCK, &interrupt, &before);
  return ::signalfd(-1, &interrupt, SFD_CLOEXEC | SFD_NONBLOCK);
}

bool isIgnored()
{
  struct sigaction action = {};
  return ::sigaction(SIGINT, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void raise(const Descriptor& event)
{
  const std::uint64_t one = 1;
  static_cast<void>(::write(event.number, &one, sizeof one) == 0);
}

/// Past the streams, which the thread that hangs may have locked.
void say(const std::string& text)
{
  const std::string line = (::isatty(STDERR_FILENO) != 0 ? "\r\x1b[K" : "") + std::string("sdm: ") + text + "\n";
  static_cast<void>(::write(STDERR_FILENO, line.data(), line.size()) == 0);
}

/// Who holds the service's lock is who everything waits for.
std::string whereItIs()
{
  std::string text;
  for (const host::LockReport& lock : host::lockReports())
  {
    for (const host::LockUser& user : lock.holders)
      text += ", in " + shown(user.description());
  }
  return text;
}

std::string seconds(std::chrono::steady_clock::duration duration)
{
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f s", std::chrono::duration<double>(duration).count());
  return text.data();
}

} // namespace

Interrupts::Interrupts()
    : takenOver(!isIgnored()),
      signals(takenOver ? taken(before) : -1),
      pending(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      over(::eventfd(0, EFD_CLOEXEC))
{
  if (takenOver)
    listener = std::thread([this] { listen(); });
}

Interrupts::~Interrupts()
{
  if (!takenOver)
    return;
  raise(over);
  listener.join();
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void Interrupts::doing(const std::string& itsWork)
{
  const std::lock_guard<std::mutex> hold(mutex);
  state = State::working;
  work = itsWork;
  began = std::chrono::steady_clock::now();
  heard = 0;
}

bool Interrupts::interrupted() const
{
  const std::lock_guard<std::mutex> hold(mutex);
  return heard != 0;
}

void Interrupts::set(State itsState)
{
  const std::lock_guard<std::mutex> hold(mutex);
  state = itsState;
}

void Interrupts::awaitCommand()
{
  set(State::waiting);
}

bool Interrupts::takePending()
{
  std::uint64_t count = 0;
  return ::read(pending.number, &count, sizeof count) == sizeof count;
}

bool Interrupts::waitForInput()
{
  set(State::waiting);
  std::array<pollfd, 2> sources = {{{STDIN_FILENO, POLLIN, 0}, {pending.number, POLLIN, 0}}};
  while (::poll(sources.data(), sources.size(), -1) < 0 && errno == EINTR)
  {
  }
  // Until the next work begins it is the line that an interrupt is about.
  return !takePending();
}

void Interrupts::leaveTo(const std::function<void()>& call)
{
  set(State::away);
  call();
  set(State::working);
}

void Interrupts::leaves(const std::string& unfinished)
{
  const std::lock_guard<std::mutex> hold(mutex);
  left = unfinished;
}

void Interrupts::listen()
{
  std::array<pollfd, 2> sources = {{{signals.number, POLLIN, 0}, {over.number, POLLIN, 0}}};
  for (;;)
  {
    if (::poll(sources.data(), sources.size(), -1) < 0)
      continue;
    if (sources[1].revents != 0)
      return;
    signalfd_siginfo signal{};
    if (::read(signals.number, &signal, sizeof signal) == sizeof signal)
      hear();
  }
}

void Interrupts::hear()
{
  const std::lock_guard<std::mutex> hold(mutex);
  if (state == State::away)
    return;
  if (state == State::waiting)
  {
    raise(pending);
    return;
  }
  const std::string text = work + (heard == 0 ? " still runs, for " : " did not end within ") +
                           seconds(std::chrono::steady_clock::now() - began) + whereItIs();
  if (++heard == 1)
  {
    say(text + "; Ctrl-C again ends the program");
    return;
  }
  say(text + "; the program ends here" + (left.empty() ? "" : "; " + left));
  ::_exit(exitInterrupted);
}

} // namespace cli
