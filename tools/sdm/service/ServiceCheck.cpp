#include "ServiceCheck.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "ScratchFolder.h"
#include "ServiceTrial.h"
#include "StartError.h"

namespace cli
{
namespace
{

// The process that runs the service tells ours in messages of three texts. What it is about to do comes first, so that
// its last message says where it ended.
enum class Message : char
{
  finding = 'f',
  step = 's',
  notStarted = 'n',
  done = 'd'
};

void writeAll(int pipe, const void* bytes, std::size_t count)
{
  const char* next = static_cast<const char*>(bytes);
  while (count > 0)
  {
    const ssize_t written = ::write(pipe, next, count);
    if (written < 0 && errno == EINTR)
      continue;
    if (written <= 0)
      std::_Exit(1); // Nobody listens any more.
    next += written;
    count -= static_cast<std::size_t>(written);
  }
}

void send(int pipe, Message kind, const std::string& first = "", const std::string& second = "",
          const std::string& third = "")
{
  std::string text(1, static_cast<char>(kind));
  for (const std::string* each : {&first, &second, &third})
  {
    const auto size = static_cast<std::uint32_t>(each->size());
    text.append(reinterpret_cast<const char*>(&size), sizeof size);
    text += *each;
  }
  writeAll(pipe, text.data(), text.size());
}

[[noreturn]] void tryInThisProcess(int pipe, const std::filesystem::path& service, const std::filesystem::path& map,
                                   const std::filesystem::path& scratch)
{
  ::dup2(STDERR_FILENO, STDOUT_FILENO);
  const ServiceTrial::Listener listener = {[&](const ServiceFinding& found)
                                           { send(pipe, Message::finding, found.rootId, found.rule, found.text); },
                                           [&](const std::string& step) { send(pipe, Message::step, step); }};
  try
  {
    listener.step("while it was loaded");
    ServiceTrial(service, map, scratch, listener).run();
    send(pipe, Message::done);
  }
  catch (const std::exception& error)
  {
    send(pipe, Message::notStarted, error.what());
  }
  // What the service has at its exit is not tried: it stays loaded on a device.
  std::_Exit(0);
}

/// The process of a trial, as seen from ours.
class Trial
{
public:
  Trial(const std::filesystem::path& service, const std::filesystem::path& map, Progress& itsProgress,
        std::chrono::seconds itsPatience)
      : progress(itsProgress), patience(itsPatience)
  {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
      throw StartError(std::string("no pipe can be made for the trial: ") + std::strerror(errno));
    std::fflush(nullptr);
    child = ::fork();
    if (child == 0)
    {
      ::close(ends[0]);
      tryInThisProcess(ends[1], std::filesystem::absolute(service), std::filesystem::absolute(map), scratch.path());
    }
    ::close(ends[1]);
    pipe = ends[0];
    if (child < 0)
      throw StartError(std::string("no process can be made for the trial: ") + std::strerror(errno));
  }

  ~Trial()
  {
    ::close(pipe);
    end();
  }
  Trial(const Trial&) = delete;
  Trial& operator=(const Trial&) = delete;

  std::vector<ServiceFinding> listen()
  {
    for (char kind = 0; read(&kind, 1);)
    {
      const auto texts = readTexts();
      if (!texts)
        break;
      switch (static_cast<Message>(kind))
      {
      case Message::finding:
        findings.push_back({(*texts)[0], (*texts)[1], (*texts)[2]});
        break;
      case Message::step:
        step = (*texts)[0];
        break;
      case Message::notStarted:
        throw StartError((*texts)[0]);
      case Message::done:
        return findings;
      }
    }
    tellEnd();
    return findings;
  }

private:
  using Texts = std::array<std::string, 3>;

  bool read(void* bytes, std::size_t count)
  {
    char* next = static_cast<char*>(bytes);
    while (count > 0)
    {
      const int ready = waitForMore();
      hangs = ready == 0;
      const ssize_t got = ready == 1 ? ::read(pipe, next, count) : -1;
      if (got <= 0)
        return false;
      next += got;
      count -= static_cast<std::size_t>(got);
    }
    return true;
  }

  /// As `poll`, with the progress shown in between.
  int waitForMore()
  {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (true)
    {
      pollfd waiting{pipe, POLLIN, 0};
      const int ready = ::poll(&waiting, 1, static_cast<int>(Progress::interval.count()));
      progress.tick();
      const bool goesOn = ready == 0 || (ready < 0 && errno == EINTR);
      if (!goesOn || std::chrono::steady_clock::now() >= deadline)
        return ready;
    }
  }

  std::optional<Texts> readTexts()
  {
    Texts texts;
    for (std::string& text : texts)
    {
      std::uint32_t size = 0;
      if (!read(&size, sizeof size))
        return std::nullopt;
      text.resize(size);
      if (!read(text.data(), size))
        return std::nullopt;
    }
    return texts;
  }

  void tellEnd()
  {
    if (hangs)
    {
      findings.push_back(
          {"", "hang", "the service did not come back within " + std::to_string(patience.count()) + " s " + step});
      return;
    }
    const int status = end();
    const std::string how = WIFSIGNALED(status)
                                ? std::string("was ended by a signal (") + strsignal(WTERMSIG(status)) + ")"
                                : "ended the process with exit code " + std::to_string(WEXITSTATUS(status));
    findings.push_back({"", "crash", "the service " + how + " " + step});
  }

  int end()
  {
    int status = 0;
    if (child > 0)
    {
      if (hangs)
        ::kill(child, SIGKILL);
      while (::waitpid(child, &status, 0) < 0 && errno == EINTR)
        continue;
    }
    child = -1;
    return status;
  }

  ScratchFolder scratch{"check"};
  Progress& progress;
  std::chrono::seconds patience;
  pid_t child = -1;
  int pipe = -1;
  bool hangs = false;
  std::string step;
  std::vector<ServiceFinding> findings;
};

} // namespace

std::vector<ServiceFinding> checkService(const std::filesystem::path& service, const std::filesystem::path& map,
                                         Progress& progress, std::chrono::seconds patience)
{
  return Trial(service, map, progress, patience).listen();
}

} // namespace cli
