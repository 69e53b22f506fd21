// Starts the pager that the user chose, with the text on its standard input.
#include "Pager.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "base/Descriptor.h"

namespace cli
{
namespace
{

/// What a shell says of a command that it cannot find or run.
constexpr int notRun = 126;

/// A reader that leaves early makes a write fail, and does not end this program.
class WithoutPipeSignal
{
public:
  WithoutPipeSignal() : before(std::signal(SIGPIPE, SIG_IGN))
  {
  }
  ~WithoutPipeSignal()
  {
    std::signal(SIGPIPE, before);
  }
  WithoutPipeSignal(const WithoutPipeSignal&) = delete;
  WithoutPipeSignal& operator=(const WithoutPipeSignal&) = delete;

private:
  void (*before)(int);
};

/// The command reads from `input` and hears all signals again. -1 when it cannot be started.
pid_t started(const std::string& command, int input)
{
  posix_spawn_file_actions_t files;
  posix_spawnattr_t attributes;
  ::posix_spawn_file_actions_init(&files);
  ::posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
  ::posix_spawnattr_init(&attributes);
  sigset_t signals;
  ::sigemptyset(&signals);
  ::posix_spawnattr_setsigmask(&attributes, &signals);
  ::sigaddset(&signals, SIGPIPE);
  ::posix_spawnattr_setsigdefault(&attributes, &signals);
  ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  std::string shell = "sh";
  std::string option = "-c";
  std::string text = command;
  const std::array<char*, 4> words = {shell.data(), option.data(), text.data(), nullptr};
  pid_t process = -1;
  const int problem = ::posix_spawn(&process, "/bin/sh", &files, &attributes, words.data(), environ);
  ::posix_spawn_file_actions_destroy(&files);
  ::posix_spawnattr_destroy(&attributes);
  return problem == 0 ? process : -1;
}

bool ran(pid_t process)
{
  int status = 0;
  while (::waitpid(process, &status, 0) < 0)
  {
    if (errno != EINTR)
      return true;
  }
  return !WIFEXITED(status) || WEXITSTATUS(status) < notRun;
}

} // namespace

bool page(const std::string& text)
{
  const char* chosen = std::getenv("PAGER");
  const std::string command = chosen == nullptr ? "less" : chosen;
  std::array<int, 2> ends{};
  if (command.empty() || ::pipe2(ends.data(), O_CLOEXEC) != 0)
    return false;
  // What fits goes by without a key, colours are kept, and the text stays on the screen.
  ::setenv("LESS", "FRX", 0);
  const WithoutPipeSignal quietly;
  pid_t process = -1;
  {
    const Descriptor output(ends[1]);
    {
      // Closed before the text is written: a second reader here would keep the writer waiting when the first one left.
      const Descriptor input(ends[0]);
      process = started(command, input.number);
    }
    static_cast<void>(process >= 0 && writeAll(output.number, text));
  }
  return process >= 0 && ran(process);
}

} // namespace cli
