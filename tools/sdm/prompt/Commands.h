// The commands of the prompt, as a table: help, completion and suggestions are made from it.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "Session.h"

namespace cli
{

using Arguments = std::vector<std::string>;

/// What the words after a command are.
enum class Expects
{
  nothing,
  rootIds,
  databaseIds,  ///< root ids of items in the database
  idsAndValues, ///< a root id of the database, a value, and so on
  localIdAndValue,
  part, ///< anything in a root id
  level,
  number,
  faultWords,
  command
};

constexpr std::size_t anyNumber = std::numeric_limits<std::size_t>::max();

struct Command
{
  std::string name;
  std::string arguments;
  /// One line; what follows it is shown by the help of this command alone.
  std::string help;
  Expects expects;
  std::size_t fewest;
  std::size_t most;
  Outcome (*run)(Session& session, const Arguments& arguments);
};

/// In the order of the help.
const std::vector<Command>& commands();

/// Null when there is no command of exactly this name; some have a second one.
const Command* findCommand(const std::string& called);

std::vector<std::string> commandNames();

/// A line a command, for the help texts, wrapped to so many columns; 0 for any width.
std::string commandSummary(std::size_t columns);

/// Reads a line and carries it out; what goes wrong is printed, and failures of the platform do not pass on.
Outcome carryOut(Session& session, const std::string& line);

} // namespace cli
