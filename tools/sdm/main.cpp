// The operator's program: brings a device up, then does what it is told, line by line.
#include <cstdlib>
#include <exception>
#include <iostream>
#include <unistd.h>

#include "Arguments.h"
#include "Commands.h"
#include "Completion.h"
#include "LineReader.h"
#include "Session.h"
#include "Shown.h"
#include "StandardStreams.h"
#include "StartReport.h"
#include "Words.h"

namespace cli
{
namespace
{

bool wantsColours()
{
  const char* refused = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  return isatty(STDOUT_FILENO) != 0 && (refused == nullptr || *refused == '\0') && terminal != nullptr &&
         *terminal != '\0' && std::string(terminal) != "dumb";
}

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

ExitCode takeCommands(Session& session, bool interactive)
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
    if (carryOut(session, line) == Outcome::refused && !interactive)
      code = exitRefused;
    session.out.flush();
  }
  return code;
}

ExitCode run(const RunSettings& settings)
{
  RunningDevice running(settings);
  Session session(running, std::cout, Style(wantsColours()));
  if (const std::string warning = encryptionWarning(running); !warning.empty())
    std::cerr << "sdm: " << warning << "\n";
  printStart(session, running.summary(), "CommsService is up on " + shown(running.folder().string()));
  const bool interactive = isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
  if (interactive)
    std::cout << session.style.faint("`help` shows the commands, Tab completes them, Ctrl-D ends.") << "\n";
  std::cout.flush();
  return takeCommands(session, interactive);
}

ExitCode program(int argc, char** argv)
{
  try
  {
    const auto arguments = readArguments(argc, argv);
    if (const auto* code = std::get_if<ExitCode>(&arguments))
      return *code;
    return run(std::get<RunSettings>(arguments));
  }
  catch (const std::exception& error)
  {
    std::cerr << "sdm: " << shown(error.what()) << "\n";
    return exitNoDevice;
  }
}

} // namespace
} // namespace cli

int main(int argc, char** argv)
{
  cli::holdStandardDescriptors();
  cli::reportFileSizeLimit();
  cli::useUtf8();
  const cli::ExitCode code = cli::program(argc, argv);
  return cli::finishOutput() || code != cli::exitDone ? code : cli::exitRefused;
}
