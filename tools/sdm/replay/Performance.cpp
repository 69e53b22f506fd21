#include "replay/Performance.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <set>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

#include "ScratchFolder.h"
#include "StartError.h"
#include "record/CommandText.h"
#include "run/Commands.h"
#include "run/RunningDevice.h"
#include "run/Words.h"

namespace cli::replay
{
namespace
{

constexpr int notStarted = 97;

std::string contentOf(const std::filesystem::path& path)
{
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void writeFile(const std::filesystem::path& path, const std::string& content)
{
  std::ofstream(path, std::ios::binary) << content;
}

/// What stands in the folder of a performance.
constexpr const char* transcriptName = "transcript.jsonl";
constexpr const char* mapName = "map";
constexpr const char* reasonName = "reason";

/// The part of the process that runs the service.
class Stage
{
public:
  Stage(const record::Transcript& itsTranscript, const StandIns& itsStandIns, RunSettings itsSettings,
        std::filesystem::path itsFolder)
      : transcript(itsTranscript), standIns(itsStandIns), settings(std::move(itsSettings)), folder(std::move(itsFolder))
  {
    settings.device = folder / "device";
    settings.interfaces = transcript.header.interfaces;
    settings.logLevel = transcript.header.logLevel;
    settings.consoleLevel = 0;
    settings.slowWait = std::chrono::milliseconds(0);
  }

  [[noreturn]] void run()
  {
    const int nowhere = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
      ::dup2(nowhere, descriptor);
    try
    {
      record::Recorder recorder(folder / transcriptName);
      {
        RunningDevice running(settings, &recorder);
        writeFile(folder / mapName, running.mapFile().string());
        carryOutAll(running, recorder);
      }
      if (!recorder.trouble().empty())
        throw StartError(recorder.trouble());
    }
    catch (const std::exception& error)
    {
      writeFile(folder / reasonName, error.what());
      std::_Exit(notStarted);
    }
    std::_Exit(0);
  }

private:
  void carryOutAll(RunningDevice& running, record::Recorder& recorder)
  {
    std::ostringstream unread;
    Session session(running, unread, Style(false));
    for (const record::Event& event : transcript.events)
    {
      if (record::kindOf(event) != "command" || session.quit)
        continue;
      std::set<std::size_t> secretWords;
      const std::string line = lineOf(event, recorder, secretWords);
      recorder.command(line, secretWords);
      recorder.commandEnded(carryOut(session, line) == Outcome::done);
      unread.str("");
    }
  }

  /// The command with values in place of the names of secrets.
  std::string lineOf(const record::Event& event, record::Recorder& recorder, std::set<std::size_t>& secretWords) const
  {
    std::string masked = event.content["command"];
    Words words = splitWords(masked);
    if (!words.problem.empty())
      return masked;
    for (std::size_t i = 0; i < words.list.size(); ++i)
    {
      if (!record::isSecretName(words.list[i]))
        continue;
      secretWords.insert(i);
      words.list[i] = recorder.secret(words.list[i]).value_or(standIns.of(words.list[i]));
    }
    return record::joinedWords(words.list);
  }

  const record::Transcript& transcript;
  const StandIns& standIns;
  RunSettings settings;
  const std::filesystem::path folder;
};

/// A process that is waited for. Its end is seen by that of the pipe that it holds open.
class Child
{
public:
  explicit Child(Stage& stage)
  {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
      throw StartError(std::string("no pipe can be made for the replay: ") + std::strerror(errno));
    std::fflush(nullptr);
    process = ::fork();
    if (process == 0)
      stage.run();
    const int reason = errno;
    ::close(ends[1]);
    pipe = ends[0];
    if (process < 0)
      throw StartError(std::string("no process can be made for the replay: ") + std::strerror(reason));
  }
  ~Child()
  {
    ::close(pipe);
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  /// How it ended: empty when it did all it should. Null when it could not begin.
  std::optional<std::string> trouble(std::chrono::seconds patience)
  {
    pollfd waiting{pipe, POLLIN, 0};
    int ready = 0;
    do
      ready = ::poll(&waiting, 1, static_cast<int>(std::chrono::milliseconds(patience).count()));
    while (ready < 0 && errno == EINTR);
    if (ready == 0)
      ::kill(process, SIGKILL);
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR)
      continue;
    if (ready == 0)
      return "nothing more within " + std::to_string(patience.count()) + " s";
    if (WIFSIGNALED(status))
      return std::string("the service was ended by a signal (") + ::strsignal(WTERMSIG(status)) + ")";
    if (WEXITSTATUS(status) == notStarted)
      return std::nullopt;
    return std::string();
  }

private:
  pid_t process = -1;
  int pipe = -1;
};

} // namespace

Performance perform(const record::Transcript& transcript, const StandIns& standIns, const ReplaySettings& settings)
{
  const ScratchFolder scratch("replay");
  RunSettings run;
  if (settings.service)
    run.service = std::filesystem::absolute(*settings.service);
  if (settings.map)
    run.map = std::filesystem::absolute(*settings.map);
  Stage stage(transcript, standIns, run, scratch.path());
  const auto trouble = Child(stage).trouble(settings.patience);
  if (!trouble)
    throw StartError(contentOf(scratch.path() / reasonName));
  Performance done;
  done.trouble = *trouble;
  done.map = contentOf(scratch.path() / mapName);
  if (std::filesystem::exists(scratch.path() / transcriptName) &&
      !std::filesystem::is_empty(scratch.path() / transcriptName))
    done.transcript = record::readTranscript(scratch.path() / transcriptName, false);
  if (done.trouble.empty() && !done.transcript.complete)
    done.trouble = "the service ended the process";
  return done;
}

} // namespace cli::replay
