#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <unistd.h>

#include "Commands.h"
#include "Completion.h"
#include "LineReader.h"
#include "Progress.h"
#include "Run.h"
#include "Session.h"
#include "Shown.h"
#include "StartReport.h"
#include "Words.h"

namespace cli
{
namespace
{

/// Whether a secret is named, wherever that is: a line that only might hold a value of it is held back, too.
bool holdsSecret(const std::string& line, const Masking& masking)
{
  const Words words = splitWords(line);
  for (std::size_t i = 1; i < words.list.size(); ++i)
  {
    if (masking.isSecret(words.list[i]))
      return true;
  }
  return false;
}

/// `set ID` with a secret at the end asks for its value, so that it need not be typed in the open.
bool askForSecret(LineReader& reader, Session& session, std::string& line)
{
  const Words words = splitWords(line);
  const auto& list = words.list;
  if (list.size() % 2 != 0 || list.empty() || list.front() != "set")
    return true;
  const MapItem* item = session.running.items().find(list.back());
  if (item == nullptr || !session.running.masking().isSecret(*item))
    return true;
  std::string value;
  if (!reader.askHidden("new value of " + shown(item->rootId) + " (not shown): ", value))
    return false;
  line += " \"";
  for (const char c : value)
    line += (c == '"' || c == '\\' ? std::string("\\") : std::string()) + c;
  line += "\"";
  return true;
}

/// As `carryOut`, with the recorder told when there is one.
Outcome carryOutRecorded(Session& session, const std::string& line, record::Recorder* recorder)
{
  const bool says = recorder != nullptr && line.find_first_not_of(" \t") != std::string::npos &&
                    line[line.find_first_not_of(" \t")] != '#';
  if (says)
    recorder->command(line);
  const Outcome outcome = carryOut(session, line);
  if (says)
    recorder->commandEnded(outcome == Outcome::done);
  return outcome;
}

/// Keeps what goes to standard output until it goes, so that it comes behind the line that shows the progress.
class HeldOutput
{
public:
  HeldOutput() : real(std::cout.rdbuf(held.rdbuf()))
  {
  }
  ~HeldOutput()
  {
    std::cout.rdbuf(real);
    std::cout << held.str();
  }
  HeldOutput(const HeldOutput&) = delete;
  HeldOutput& operator=(const HeldOutput&) = delete;

private:
  std::ostringstream held;
  std::streambuf* real;
};

/// As `carryOutRecorded`, for somebody who waits at the terminal.
Outcome carryOutWatched(Session& session, const std::string& line, record::Recorder* recorder)
{
  const Words words = splitWords(line);
  const HeldOutput held;
  const Waiting waiting(words.list.empty() ? "" : shown(words.list.front()));
  return carryOutRecorded(session, line, recorder);
}

ExitCode takeCommands(Session& session, bool interactive, record::Recorder* recorder)
{
  const auto reader = interactive ? makeTerminalReader("sdm> ", [&](const std::string& line)
                                                       { return completions(line, session.running.items()); })
                                  : makePlainReader();
  ExitCode code = exitDone;
  for (std::string line; !session.quit && reader->next(line);)
  {
    if (line.find_first_not_of(" \t") != std::string::npos && !holdsSecret(line, session.running.masking()))
      reader->keep(line);
    if (interactive && !askForSecret(*reader, session, line))
      continue;
    if (interactive)
      carryOutWatched(session, line, recorder);
    else if (carryOutRecorded(session, line, recorder) == Outcome::refused)
      code = exitRefused;
    session.out.flush();
  }
  return code;
}

std::unique_ptr<RunningDevice> broughtUp(const RunSettings& settings, record::Recorder* recorder)
{
  const Waiting waiting("bringing the device up");
  return std::make_unique<RunningDevice>(settings, recorder);
}

ExitCode runRecorded(const RunSettings& settings, record::Recorder* recorder)
{
  const auto device = broughtUp(settings, recorder);
  RunningDevice& running = *device;
  Session session(running, std::cout, Style(wantsColours(STDOUT_FILENO)));
  if (const std::string warning = encryptionWarning(running); !warning.empty())
    std::cerr << "sdm: " << warning << "\n";
  printStart(session, running.summary(),
             shown(running.serviceName()) + " is up on " + shown(running.folder().string()));
  const bool interactive = isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
  if (interactive)
    std::cout << session.style.faint("`help` shows the commands, Tab completes them, Ctrl-D ends.") << "\n";
  std::cout.flush();
  return takeCommands(session, interactive, recorder);
}

} // namespace

ExitCode runDevice(const RunSettings& settings)
{
  if (!settings.record)
    return runRecorded(settings, nullptr);
  record::Recorder recorder(std::filesystem::absolute(*settings.record));
  const ExitCode code = runRecorded(settings, &recorder);
  const std::string trouble = recorder.trouble();
  if (trouble.empty())
    return code;
  std::cerr << "sdm: " << shown(trouble) << "\n";
  return exitRefused;
}

} // namespace cli
