// What every program of the product does around what it is there for.
#pragma once

#include <functional>
#include <variant>

#include "Subcommand.h"

namespace cli
{

/// Reads a command line, and carries out what it asks for. For `main`, which returns the answer: it tells of what was
/// thrown and of output that was lost.
int runProgram(const std::function<std::variant<Action, ExitCode>()>& readCommandLine);

} // namespace cli
