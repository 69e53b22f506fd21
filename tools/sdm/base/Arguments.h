// What the program was asked to do on its command line.
#pragma once

#include <variant>

#include "Subcommand.h"

namespace cli
{

/// Reads the command line of `sdm`; for a subcommand that is a program of its own it becomes that. When there is
/// nothing to do (help, version, wrong usage) the text was written and the exit code is the answer.
std::variant<Action, ExitCode> readArguments(int argc, const char* const* argv);

/// As `readArguments`, of a program sdm-NAME that is one subcommand.
std::variant<Action, ExitCode> readArgumentsOf(const Subcommand& only, int argc, const char* const* argv);

} // namespace cli
