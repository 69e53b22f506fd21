// What the program was asked to do on its command line.
#pragma once

#include <variant>

#include "Subcommand.h"

namespace cli
{

/// Reads the command line. When there is nothing to do (help, version, wrong usage) the text was written and the exit
/// code is the answer.
std::variant<Action, ExitCode> readArguments(int argc, const char* const* argv);

} // namespace cli
