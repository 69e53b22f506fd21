// Reads line after line until the end, and remembers whether any command was refused.
#include "CommandLoop.h"

#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <unistd.h>

#include "CommandFunctions.h"
#include "CommandText.h"
#include "Completion.h"
#include "Interrupts.h"
#include "LineReader.h"
#include "Pager.h"
#include "PromptHistory.h"
#include "PromptLines.h"
#include "Session.h"
#include "StartReport.h"
#include "base/Progress.h"
#include "base/Screen.h"
#include "base/Shown.h"
#include "base/Words.h"
#include "service/CurrentCallback.h"

namespace cli
{
namespace
{

/// As `carryOut`, with the recorder told when there is one.
Outcome carryOutRecorded(Session& session, const std::string& line, transcript::Recorder* recorder)
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
  }
  HeldOutput(const HeldOutput&) = delete;
  HeldOutput& operator=(const HeldOutput&) = delete;

  std::string text() const
  {
    return held.str();
  }

private:
  std::ostringstream held;
  std::streambuf* real;
};

/// The command of a line, to be shown to whoever waits for it.
std::string nameOf(const std::string& line)
{
  const Words words = splitWords(line);
  return words.list.empty() ? "" : shown(words.list.front());
}

/// As `carryOutRecorded`, for somebody who waits at the terminal. What was printed.
std::string carryOutWatched(Session& session, const std::string& line, transcript::Recorder* recorder)
{
  const HeldOutput held;
  const Waiting waiting(nameOf(line));
  carryOutRecorded(session, line, recorder);
  return held.text();
}

/// A screen at a time where it is longer than one, if there is a program for that.
void showTyped(const std::string& text, Interrupts& interrupts)
{
  const ScreenSize screen = screenSize(STDOUT_FILENO);
  bool paged = false;
  if (screen.rows != 0 && rowsOf(text, screen.columns) >= screen.rows)
    interrupts.leaveTo([&] { paged = page(text); });
  if (!paged)
    std::cout << text;
  std::cout.flush();
}

/// A line that is too long for any command is passed over.
bool isTooLong(const std::string& line, std::size_t number, Session& session)
{
  if (line.size() <= longestLine)
    return false;
  session.refuse("line " + std::to_string(number) + " has more than " + std::to_string(longestLine) +
                 " bytes and is passed over");
  return true;
}

/// What the start printed as failed or refused counts as a command's refusal does.
ExitCode takeScript(Session& session, Interrupts& interrupts, transcript::Recorder* recorder)
{
  bool interrupted = false;
  const auto reader = makePlainReader(interrupts, interrupted);
  ExitCode code = session.takeRefused() || failed(session.running.summary()) ? exitRefused : exitDone;
  std::size_t number = 0;
  for (std::string line; !session.quit && reader->next(line);)
  {
    const bool tooLong = isTooLong(line, ++number, session);
    interrupts.doing(tooLong ? "a line" : nameOf(line));
    if (tooLong || carryOutRecorded(session, line, recorder) == Outcome::refused)
      code = exitRefused;
    session.out.flush();
    if (interrupts.interrupted())
      return exitInterrupted;
  }
  return interrupted ? exitInterrupted : code;
}

/// Keeps the line for the arrow keys, and for later runs when nothing in it can be a secret.
void remember(const std::string& line, const Session& session, LineReader& reader, const PromptHistory& history)
{
  if (line.find_first_not_of(" \t") == std::string::npos || holdsSecret(line, session.running.masking()))
    return;
  reader.keep(line);
  if (mayBeKept(line, session))
    history.add(line);
}

ExitCode takeTyped(Session& session, Interrupts& interrupts, transcript::Recorder* recorder)
{
  const auto reader = makeTerminalReader(
      "sdm> ", [&](const std::string& line) { return completions(line, session.running.items()); }, interrupts);
  const PromptHistory history;
  for (const std::string& line : history.lines())
    reader->keep(line);
  std::size_t number = 0;
  for (std::string line; !session.quit && reader->next(line);)
  {
    if (isTooLong(line, ++number, session))
      continue;
    remember(line, session, *reader, history);
    if (!askForSecret(*reader, session, line))
      continue;
    interrupts.doing(nameOf(line));
    session.columns = screenSize(STDOUT_FILENO).columns;
    showTyped(carryOutWatched(session, line, recorder), interrupts);
  }
  return exitDone;
}

std::unique_ptr<RunningDevice> broughtUp(const RunSettings& settings, transcript::Recorder* recorder)
{
  const Waiting waiting("bringing the device up");
  return std::make_unique<RunningDevice>(settings, recorder);
}

bool isTerminal(int descriptor)
{
  return ::isatty(descriptor) != 0;
}

/// What is logged goes to people's eyes only when they ask for it; the file has it all.
RunSettings withConsole(RunSettings settings, bool interactive)
{
  const bool disturbs = settings.quiet || (interactive && isTerminal(STDERR_FILENO));
  if (disturbs && !settings.showLog)
    settings.consoleLevel = 0;
  return settings;
}

/// On a terminal people read everything in one place; elsewhere standard output is for programs.
SessionOutput outputFor(const RunSettings& settings, bool interactive)
{
  const int remarks = interactive ? STDOUT_FILENO : STDERR_FILENO;
  return {std::cout,
          interactive ? std::cout : std::cerr,
          Style(wantsColours(STDOUT_FILENO)),
          Style(wantsColours(remarks)),
          settings.quiet,
          interactive ? screenSize(STDOUT_FILENO).columns : 0};
}

ExitCode runRecorded(const RunSettings& settings, transcript::Recorder* recorder)
{
  const bool interactive = isTerminal(STDIN_FILENO) && isTerminal(STDOUT_FILENO);
  Interrupts interrupts;
  interrupts.doing("bringing the device up");
  if (recorder != nullptr)
    interrupts.leaves(shown(recorder->unfinished()));
  const auto device = broughtUp(withConsole(settings, interactive), recorder);
  RunningDevice& running = *device;
  Session session(running, outputFor(settings, interactive));
  if (const std::string warning = encryptionWarning(running); !warning.empty())
    std::cerr << "sdm: " << warning << "\n";
  printStart(session, running.summary(),
             shown(running.serviceName()) + " is up on " + shown(running.folder().string()));
  if (interactive && !settings.quiet)
    std::cout << session.style.faint("`help` shows the commands, Tab completes them, Ctrl-D ends.") << "\n";
  std::cout.flush();
  if (!interactive && interrupts.interrupted())
    return exitInterrupted;
  const ExitCode code = (interactive ? takeTyped : takeScript)(session, interrupts, recorder);
  interrupts.doing("taking the device down");
  return code;
}

} // namespace

ExitCode runDevice(const RunSettings& settings)
{
  nameCallbackAtCrash();
  if (!settings.record)
    return runRecorded(settings, nullptr);
  transcript::Recorder recorder(std::filesystem::absolute(*settings.record), maskedCommand, settings.force);
  const ExitCode code = runRecorded(settings, &recorder);
  const std::string trouble = recorder.trouble();
  if (trouble.empty())
    return code;
  std::cerr << "sdm: " << shown(trouble) << "\n";
  return exitRefused;
}

} // namespace cli
