#include "replay/Performance.h"

#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "OwnProcess.h"
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

  void run()
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

private:
  void carryOutAll(RunningDevice& running, record::Recorder& recorder)
  {
    std::ostringstream unread;
    Session session(running, {unread, unread, Style(false), Style(false)});
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

} // namespace

Performance perform(const record::Transcript& transcript, const StandIns& standIns, const ReplaySettings& settings,
                    Progress& progress)
{
  const ScratchFolder scratch("replay");
  RunSettings run;
  if (settings.service)
    run.service = std::filesystem::absolute(*settings.service);
  if (settings.map)
    run.map = std::filesystem::absolute(*settings.map);
  Stage stage(transcript, standIns, run, scratch.path());
  const auto work = [&]
  {
    stage.run();
    return std::string();
  };
  Performance done;
  done.trouble = inOwnProcess(work, settings.patience, progress).trouble;
  done.map = contentOf(scratch.path() / mapName);
  if (std::filesystem::exists(scratch.path() / transcriptName) &&
      !std::filesystem::is_empty(scratch.path() / transcriptName))
    done.transcript = record::readTranscript(scratch.path() / transcriptName, false);
  return done;
}

} // namespace cli::replay
