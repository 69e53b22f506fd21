// The copy is forked and sends messages through a pipe; the end of the pipe and the clock tell the rest.
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
#include <optional>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Descriptor.h"
#include "ExceptionText.h"
#include "StartError.h"

namespace cli
{
namespace
{

// A message is a letter, the size of its text, and the text. The last one ends before the pipe does, which a service
// may have handed on to processes that live longer.
enum class Kind : char
{
  told = 't',
  threw = 'x',
  done = 'd'
};

struct Message
{
  Kind kind = Kind::done;
  std::string text;
};

/// The pipe is open in a service that may write anything into it.
constexpr std::uint64_t longestText = 64UL << 20U;

constexpr std::size_t headSize = 1 + sizeof(std::uint64_t);

void send(int pipe, Kind kind, const std::string& text = "")
{
  const std::uint64_t size = text.size();
  std::string message(1, static_cast<char>(kind));
  message.append(reinterpret_cast<const char*>(&size), sizeof size);
  message += text;
  if (!writeAll(pipe, message))
    std::_Exit(1); // Nobody waits any more.
}

void leadStreams(Output output)
{
  const int nowhere = ::open("/dev/null", O_RDWR | O_CLOEXEC);
  ::dup2(nowhere, STDIN_FILENO);
  ::dup2(output == Output::nowhere ? nowhere : STDERR_FILENO, STDOUT_FILENO);
  if (output == Output::nowhere)
    ::dup2(nowhere, STDERR_FILENO);
}

[[noreturn]] void doWork(const std::function<void(const Tell&)>& work, int pipe, Output output)
{
  leadStreams(output);
  try
  {
    work([pipe](const std::string& text) { send(pipe, Kind::told, text); });
    send(pipe, Kind::done);
  }
  catch (const std::exception& error)
  {
    send(pipe, Kind::threw, exceptionText(error));
  }
  catch (...)
  {
    send(pipe, Kind::threw, "something that is no std::exception");
  }
  // What the service has at its exit is not run: it stays loaded on a device.
  std::_Exit(0);
}

class Worker
{
public:
  Worker(const std::function<void(const Tell&)>& work, Output output)
  {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
      throw StartError(std::string("no pipe can be made for the service: ") + std::strerror(errno));
    std::fflush(nullptr);
    process = ::fork();
    if (process == 0)
      doWork(work, ends[1], output);
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
    kill();
    end();
  }
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  WorkEnd listen(const Tell& heard, std::chrono::seconds patience, Progress& progress)
  {
    while (true)
    {
      WorkEnd trouble;
      const auto message = next(patience, progress, trouble);
      if (!message)
        return trouble;
      if (message->kind == Kind::threw)
        throw StartError(message->text);
      if (message->kind == Kind::done)
        return {};
      heard(message->text);
    }
  }

private:
  /// Nothing when none comes any more, which is told in `trouble`.
  std::optional<Message> next(std::chrono::seconds patience, Progress& progress, WorkEnd& trouble)
  {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (true)
    {
      if (auto message = takeMessage())
        return message;
      pollfd waiting{pipe, POLLIN, 0};
      const int ready = ::poll(&waiting, 1, static_cast<int>(Progress::interval.count()));
      progress.tick();
      if (ready == 1 && !readSome())
      {
        trouble = {WorkEnd::Kind::died, howItEnded()};
        return std::nullopt;
      }
      if (ready == 0 && std::chrono::steady_clock::now() >= deadline)
      {
        kill();
        trouble = {WorkEnd::Kind::hung,
                   "the service did not come back within " + std::to_string(patience.count()) + " s"};
        return std::nullopt;
      }
    }
  }

  std::optional<Message> takeMessage()
  {
    std::uint64_t size = 0;
    if (received.size() < headSize)
      return std::nullopt;
    std::memcpy(&size, received.data() + 1, sizeof size);
    if (size > longestText)
      throw StartError("the process of the service told more than " + std::to_string(longestText >> 20U) + " MiB");
    if (received.size() - headSize < size)
      return std::nullopt;
    const auto length = static_cast<std::size_t>(size);
    Message message = {static_cast<Kind>(received.front()), received.substr(headSize, length)};
    received.erase(0, headSize + length);
    return message;
  }

  /// False at the end of the pipe.
  bool readSome()
  {
    std::array<char, 65536> bytes{};
    const ssize_t got = ::read(pipe, bytes.data(), bytes.size());
    if (got > 0)
      received.append(bytes.data(), static_cast<std::size_t>(got));
    return got > 0 || (got < 0 && errno == EINTR);
  }

  std::string howItEnded()
  {
    const int status = end();
    return WIFSIGNALED(status)
               ? std::string("the service was ended by a signal (") + ::strsignal(WTERMSIG(status)) + ")"
               : "the service ended the process with exit code " + std::to_string(WEXITSTATUS(status));
  }

  void kill() const
  {
    if (process > 0)
      ::kill(process, SIGKILL);
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
  std::string received;
};

} // namespace

WorkEnd inOwnProcess(const std::function<void(const Tell& tell)>& work, const Tell& heard, Output output,
                     std::chrono::seconds patience, Progress& progress)
{
  return Worker(work, output).listen(heard, patience, progress);
}

WorkDone inOwnProcess(const std::function<std::string()>& work, std::chrono::seconds patience, Progress& progress)
{
  WorkDone done;
  done.trouble = inOwnProcess([&](const Tell& tell) { tell(work()); },
                              [&](const std::string& text) { done.text = text; }, Output::nowhere, patience, progress)
                     .how;
  return done;
}

} // namespace cli
