// The commands run in a process of their own, on a new device in a temporary folder.
#include "ReplayedRun.h"

#include <fstream>
#include <set>
#include <sstream>

#include "base/ExceptionText.h"
#include "base/OwnProcess.h"
#include "base/ScratchFolder.h"
#include "base/WholeFile.h"
#include "base/Words.h"
#include "device/RunningDevice.h"
#include "prompt/CommandText.h"
#include "prompt/Commands.h"

namespace cli::replay
{
namespace
{

void writeFile(const std::filesystem::path& path, const std::string& content)
{
  std::ofstream(path, std::ios::binary) << content;
}

/// What stands in the folder of a run.
constexpr const char* transcriptName = "transcript.jsonl";
constexpr const char* mapName = "map";

/// The part of the process that runs the service.
class Stage
{
public:
  Stage(const transcript::Transcript& itsTranscript, const StandIns& itsStandIns, RunSettings itsSettings,
        std::filesystem::path itsFolder)
      : transcript(itsTranscript), standIns(itsStandIns), settings(std::move(itsSettings)), folder(std::move(itsFolder))
  {
    settings.device = folder / "device";
    settings.interfaces = transcript.header.interfaces;
    settings.logLevel = transcript.header.logLevel;
    settings.consoleLevel = 0;
    settings.slowWait = std::chrono::milliseconds(0);
  }

  /// Answers why the recording lacks something; nothing when it does not.
  std::string run()
  {
    transcript::Recorder recorder(folder / transcriptName, maskedCommand);
    {
      RunningDevice running(settings, &recorder);
      writeFile(folder / mapName, running.mapFile().string());
      carryOutAll(running, recorder);
    }
    return recorder.trouble();
  }

private:
  void carryOutAll(RunningDevice& running, transcript::Recorder& recorder)
  {
    std::ostringstream unread;
    Session session(running, {unread, unread, Style(false), Style(false)});
    for (const transcript::Event& event : transcript.events)
    {
      if (transcript::kindOf(event) != "command" || session.quit)
        continue;
      std::set<std::size_t> secretWords;
      const std::string line = lineOf(event, recorder, secretWords);
      recorder.command(line, secretWords);
      recorder.commandEnded(carryOut(session, line) == Outcome::done);
      unread.str("");
    }
  }

  /// The command with values in place of the names of secrets.
  std::string lineOf(const transcript::Event& event, transcript::Recorder& recorder,
                     std::set<std::size_t>& secretWords) const
  {
    std::string masked = event.content["command"];
    Words words = splitWords(masked);
    if (!words.problem.empty())
      return masked;
    for (std::size_t i = 0; i < words.list.size(); ++i)
    {
      if (!transcript::isSecretName(words.list[i]))
        continue;
      secretWords.insert(i);
      words.list[i] = recorder.secret(words.list[i]).value_or(standIns.of(words.list[i]));
    }
    return joinedWords(words.list);
  }

  const transcript::Transcript& transcript;
  const StandIns& standIns;
  RunSettings settings;
  const std::filesystem::path folder;
};

/// What the stage left in its folder. Of a transcript that cannot be read nothing was recorded, which is a difference
/// of this one transcript and no reason to end the others.
void collect(const std::filesystem::path& folder, ReplayedRun& done)
{
  try
  {
    if (std::filesystem::exists(folder / mapName))
      done.map = wholeFile(folder / mapName);
    // A service that ended the process has left the recording unfinished.
    const std::filesystem::path whole = folder / transcriptName;
    done.actual = transcript::readTranscript(
        std::filesystem::exists(whole) ? whole : transcript::TranscriptFile::partOf(whole), false);
  }
  catch (const std::exception& error)
  {
    if (done.trouble.empty())
      done.trouble = exceptionText(error);
  }
}

} // namespace

ReplayedRun runAgain(const transcript::Transcript& transcript, const StandIns& standIns, const ReplaySettings& settings,
                     Progress& progress)
{
  const ScratchFolder scratch("replay");
  RunSettings run;
  if (settings.service)
    run.service = std::filesystem::absolute(*settings.service);
  if (settings.map)
    run.map = std::filesystem::absolute(*settings.map);
  Stage stage(transcript, standIns, run, scratch.path());
  const WorkDone work = inOwnProcess([&] { return stage.run(); }, settings.patience, progress);
  ReplayedRun done;
  done.trouble = work.trouble.empty() ? work.text : work.trouble;
  collect(scratch.path(), done);
  return done;
}

} // namespace cli::replay
