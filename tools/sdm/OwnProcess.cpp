#include "OwnProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Descriptor.h"
#include "StartError.h"

namespace cli
{
namespace
{

// An answer is a letter, the size of the text, and the text. So it ends before the pipe does, which a service may have
// handed on to processes that live longer.
constexpr char answered = 'a';
constexpr char threw = 't';
constexpr std::size_t headSize = 1 + sizeof(std::uint64_t);

[[noreturn]] void answer(int pipe, char kind, const std::string& text)
{
  const std::uint64_t size = text.size();
  std::string message(1, kind);
  message.append(reinterpret_cast<const char*>(&size), sizeof size);
  message += text;
  // Nobody is there to be told when it does not arrive: whoever reads sees that the process ended.
  static_cast<void>(writeAll(pipe, message));
  std::_Exit(0);
}

[[noreturn]] void doWork(const std::function<std::string()>& work, int pipe)
{
  const int nowhere = ::open("/dev/null", O_RDWR | O_CLOEXEC);
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    ::dup2(nowhere, descriptor);
  try
  {
    answer(pipe, answered, work());
  }
  catch (const std::exception& error)
  {
    answer(pipe, threw, error.what());
  }
}

class Worker
{
public:
  explicit Worker(const std::function<std::string()>& work)
  {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
      throw StartError(std::string("no pipe can be made for the service: ") + std::strerror(errno));
    std::fflush(nullptr);
    process = ::fork();
    if (process == 0)
      doWork(work, ends[1]);
    const int reason = errno;
    ::close(ends[1]);
    pipe = ends[0];
    if (process < 0)
    {
      ::close(pipe);
      throw StartError(std::string("no process can be made for the service: ") + std::strerror(reason));
    }
  }
  ~Worker()
  {
    ::close(pipe);
    end();
  }
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  WorkDone wait(std::chrono::seconds patience, Progress& progress)
  {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!isComplete())
    {
      pollfd waiting{pipe, POLLIN, 0};
      const int ready = ::poll(&waiting, 1, static_cast<int>(Progress::interval.count()));
      progress.tick();
      if (ready == 1 && !readSome())
        return {"", howItEnded()};
      if (ready == 0 && std::chrono::steady_clock::now() >= deadline)
      {
        ::kill(process, SIGKILL);
        return {"", "nothing more within " + std::to_string(patience.count()) + " s"};
      }
    }
    const std::string text = message.substr(headSize);
    if (message.front() == threw)
      throw StartError(text);
    return {text, ""};
  }

private:
  bool isComplete() const
  {
    std::uint64_t size = 0;
    if (message.size() < headSize)
      return false;
    std::memcpy(&size, message.data() + 1, sizeof size);
    return message.size() >= headSize + size;
  }

  /// False at the end of the pipe.
  bool readSome()
  {
    std::array<char, 65536> bytes{};
    const ssize_t got = ::read(pipe, bytes.data(), bytes.size());
    if (got > 0)
      message.append(bytes.data(), static_cast<std::size_t>(got));
    return got > 0 || (got < 0 && errno == EINTR);
  }

  std::string howItEnded()
  {
    const int status = end();
    return WIFSIGNALED(status)
               ? std::string("the service was ended by a signal (") + ::strsignal(WTERMSIG(status)) + ")"
               : "the service ended the process";
  }

  int end()
  {
    int status = 0;
    if (process > 0)
    {
      while (::waitpid(process, &status, 0) < 0 && errno == EINTR)
        continue;
    }
    process = -1;
    return status;
  }

  pid_t process = -1;
  int pipe = -1;
  std::string message;
};

} // namespace

WorkDone inOwnProcess(const std::function<std::string()>& work, std::chrono::seconds patience, Progress& progress)
{
  return Worker(work).wait(patience, progress);
}

} // namespace cli
