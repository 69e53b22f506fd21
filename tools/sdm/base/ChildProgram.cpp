// Starts the program without a shell and reads its output up to the end.
#include "ChildProgram.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Descriptor.h"
#include "WholeFile.h"

namespace cli
{
namespace
{

constexpr std::size_t longestComplaint = 4096;
constexpr int notStarted = 127;

/// What the child does with its descriptors before it becomes the program.
class Actions
{
public:
  Actions()
  {
    ::posix_spawn_file_actions_init(&actions);
  }
  ~Actions()
  {
    ::posix_spawn_file_actions_destroy(&actions);
  }
  Actions(const Actions&) = delete;
  Actions& operator=(const Actions&) = delete;

  posix_spawn_file_actions_t actions{};
};

class Child
{
public:
  Child(const std::vector<std::string>& command, int output, int errors)
  {
    Actions made;
    ::posix_spawn_file_actions_addopen(&made.actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&made.actions, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&made.actions, errors, STDERR_FILENO);
    std::vector<std::string> words = command;
    const int failure =
        ::posix_spawnp(&process, words.front().c_str(), &made.actions, nullptr, argumentsOf(words).data(), environ);
    if (failure != 0)
      throw Unusable("the program " + command.front() + " cannot be started: " + std::strerror(failure), failure);
  }
  ~Child()
  {
    if (ended)
      return;
    ::kill(process, SIGKILL);
    end();
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  int end()
  {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR)
      continue;
    ended = true;
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  }

private:
  pid_t process = -1;
  bool ended = false;
};

std::string firstLine(int errors)
{
  std::array<char, longestComplaint> bytes{};
  const ssize_t got = ::pread(errors, bytes.data(), bytes.size(), 0);
  const std::string text(bytes.data(), got > 0 ? static_cast<std::size_t>(got) : 0);
  return text.substr(0, text.find('\n'));
}

} // namespace

std::vector<char*> argumentsOf(std::vector<std::string>& words)
{
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);
  return arguments;
}

ChildAnswer answerOf(const std::vector<std::string>& command, std::size_t most)
{
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0)
    throw Unusable(std::string("no pipe can be made: ") + std::strerror(errno), errno);
  const Descriptor reading(ends[0]);
  // In memory, so that a program that complains at length is not held up while nobody reads.
  const Descriptor errors(::memfd_create("errors", MFD_CLOEXEC));
  ChildAnswer answer;
  std::optional<Descriptor> writing(std::in_place, ends[1]);
  Child child(command, writing->number, errors.number);
  // The end of the output comes when nobody holds the pipe any more.
  writing.reset();
  answer.output = wholeContent(reading.number, most);
  answer.code = child.end();
  answer.complaint = firstLine(errors.number);
  // Where the system cannot tell at once that there is no such program, the child ends so, without a word.
  if (answer.code == notStarted && answer.output.empty() && answer.complaint.empty())
    throw Unusable("the program " + command.front() + " cannot be started");
  return answer;
}

} // namespace cli
