// One table says what each command is called, what it takes and what it does.
#include "Commands.h"

#include <algorithm>
#include <exception>
#include <map>
#include <sstream>

#include "CommandFunctions.h"
#include "base/Screen.h"
#include "base/Shown.h"
#include "base/Suggestion.h"
#include "base/Text.h"
#include "base/Words.h"

namespace cli
{
namespace
{

std::string usage(const Command& command)
{
  return command.arguments.empty() ? command.name : command.name + " " + command.arguments;
}

Outcome unknownCommand(Session& session, const std::string& name)
{
  const std::string hint = didYouMean(name, commandNames());
  return session.refuse("there is no command " + shownValue(name) + "; " + (hint.empty() ? "`help` shows all" : hint));
}

Outcome help(Session& session, const Arguments& arguments)
{
  if (arguments.empty())
  {
    session.out << commandSummary(session.columns)
                << "\nValues with blanks stand in \"quotes\", an empty value is \"\".\n";
    return Outcome::done;
  }
  const Command* command = findCommand(arguments.front());
  if (command == nullptr)
    return unknownCommand(session, arguments.front());
  session.out << usage(*command) << "\n";
  std::istringstream lines(command->help);
  for (std::string line; std::getline(lines, line);)
  {
    const std::size_t indent = beginsWith(line, "  ") ? line.find_first_not_of(' ') : 2;
    session.out << std::string(indent, ' ')
                << wrapped(line.substr(line.find_first_not_of(' ')), session.columns, indent) << "\n";
  }
  return Outcome::done;
}

Outcome quit(Session& session, const Arguments&)
{
  session.quit = true;
  return Outcome::done;
}

Outcome answerOf(Session& session, const std::string& line)
{
  Words words = splitWords(line);
  if (!words.problem.empty())
    return session.refuse(words.problem);
  if (words.list.empty())
    return Outcome::done;
  const Command* command = findCommand(words.list.front());
  if (command == nullptr)
    return unknownCommand(session, words.list.front());
  const Arguments arguments(words.list.begin() + 1, words.list.end());
  if (arguments.size() < command->fewest || arguments.size() > command->most)
    return session.refuse("usage: " + usage(*command));
  try
  {
    return command->run(session, arguments);
  }
  catch (const std::exception& error)
  {
    return session.refuse(command->name + " failed: " + shown(error.what()));
  }
  catch (...)
  {
    return session.refuse(command->name + " failed with something that is no std::exception");
  }
}

} // namespace

const std::vector<Command>& commands()
{
  static const std::vector<Command> table = {
      {"list", "[--json] [--changed] [PART]",
       "Show all items, or those with this in their root id\n"
       "  With --changed those alone whose value is not the default.",
       Expects::part, 0, 3, listItems},
      {"show", "ID", "Show everything about one item", Expects::rootIds, 1, 1, showItem},
      {"explain", "[--json] ID",
       "Tell where the value of one item came from, and what was refused\n"
       "  Of this run and earlier ones; the numbers of requests are those of `traffic`.",
       Expects::rootIds, 1, 2, explainItem},
      {"get", "[--json] ID...", "Read values", Expects::rootIds, 1, anyNumber, getItems},
      {"set", "ID VALUE [ID VALUE...]",
       "Set values in one request; a group is taken as a whole or not at all\n"
       "  A setting whose change interrupts the service refuses the value that it has already.",
       Expects::idsAndValues, 1, anyNumber, setItems},
      {"changed", "ID VALUE", "Change a value of the device itself in the local store, and let the service know",
       Expects::localIdAndValue, 2, 2, changeLocally},
      {"import", "ID", "Read a column of the database as it stands there: the first row, undecoded",
       Expects::databaseIds, 1, 1, importItem},
      {"reset", "", "Put user data back to its defaults", Expects::nothing, 0, 0, resetUserData},
      {"reload", "", "Read user data from the database again", Expects::nothing, 0, 0, reloadUserData},
      {"restart", "", "Start the service again: defaults, database, publication to the local store", Expects::nothing,
       0, 0, restartService},
      {"lock", "[ID]", "Keep user data from being reset while this item would be; without ID show what is locked",
       Expects::rootIds, 0, 1, lockItem},
      {"unlock", "ID", "Take a lock away", Expects::rootIds, 1, 1, unlockItem},
      {"fault", "[WORD...]",
       "Make the platform fail as these words say; without them show how it is to fail\n"
       "  das absent|empty|malformed|refused|wrong-kind [N]\n"
       "  das slow MS [N]\n"
       "  encryption fails [N]\n"
       "  store absent|refuses [N]\n"
       "  disk full\n"
       "  off\n"
       "  With N for so many calls, otherwise until `fault off`. A later fault of das, encryption, store or disk "
       "takes\n"
       "  the place of an earlier one.",
       Expects::faultWords, 0, 4, demandFault},
      {"traffic", "[N]", "Show the last requests to the database with their replies, 3 without N", Expects::number, 0,
       1, showTraffic},
      {"securitylog", "[N]", "Show the last lines of the security log, 10 without N", Expects::number, 0, 1,
       showSecurityLog},
      {"stats", "",
       "Show how long callbacks and the database took, slowest first, and who waited for the lock\n"
       "  Since the program began; a callback takes as long as everything that it calls.",
       Expects::nothing, 0, 0, showStats},
      {"log", "[LEVEL]", "Set how much is logged, 0 to 6; without LEVEL show it", Expects::level, 0, 1, changeLogLevel},
      {"help", "[COMMAND]", "Show the commands, or one of them; ? does the same", Expects::command, 0, 1, help},
      {"quit", "", "End the program; exit and Ctrl-D do the same", Expects::nothing, 0, 0, quit},
  };
  return table;
}

const Command* findCommand(const std::string& called)
{
  static const std::map<std::string, std::string> alsoCalled = {{"exit", "quit"}, {"?", "help"}};
  const auto alias = alsoCalled.find(called);
  const std::string& name = alias == alsoCalled.end() ? called : alias->second;
  const auto& table = commands();
  const auto found = std::find_if(table.begin(), table.end(), [&](const Command& each) { return each.name == name; });
  return found == table.end() ? nullptr : &*found;
}

std::vector<std::string> commandNames()
{
  std::vector<std::string> names;
  for (const Command& command : commands())
    names.push_back(command.name);
  names.emplace_back("exit");
  return names;
}

std::string commandSummary(std::size_t columns)
{
  std::size_t longest = 0;
  for (const Command& command : commands())
    longest = std::max(longest, usage(command).size());
  std::ostringstream text;
  for (const Command& command : commands())
    text << "  " << padded(usage(command), longest) << "  "
         << wrapped(command.help.substr(0, command.help.find('\n')), columns, longest + 4) << "\n";
  return text.str();
}

// What was printed as refused decides, and not what an operation of the manager or a command answers in the end.
Outcome carryOut(Session& session, const std::string& line)
{
  session.running.takeOutcomes();
  session.takeRefused();
  const Outcome answer = answerOf(session, line);
  const PlatformReport untold = session.running.takeOutcomes();
  session.tellFailures(untold);
  const bool refused = session.takeRefused();
  if (untold.noDatabase && !refused)
    return session.refuse("the database was not found");
  return refused ? Outcome::refused : answer;
}

} // namespace cli
