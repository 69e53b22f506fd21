// The frame of each program: standard streams, error texts, exit codes.
#pragma once

#include <functional>
#include <variant>

#include "Subcommand.h"

namespace cli
{

/// Reads a command line and does what it asks for. `main` returns the answer. An exception is printed and becomes
/// `exitCannot`; lost output becomes `exitRefused`.
int runProgram(const std::function<std::variant<Action, ExitCode>()>& readCommandLine);

} // namespace cli
