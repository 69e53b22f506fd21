// The subcommands of the program. A folder holds each; the table in Subcommands.cpp names them.
#pragma once

#include <functional>
#include <vector>

namespace CLI
{
class App;
}

namespace cli
{

/// How the program ends. Each subcommand's `--help` tells what it means there.
enum ExitCode : int
{
  exitDone = 0,
  exitRefused = 1,
  exitUsage = 2,
  exitCannot = 3,
  /// As shells tell of a program that Ctrl-C ended.
  exitInterrupted = 130
};

/// Does what the command line asked for. What it throws is printed, and the exit code is `exitCannot`.
using Action = std::function<ExitCode()>;

struct Subcommand
{
  const char* name;
  /// One line of `sdm --help`.
  const char* summary;
  /// Adds options and help texts. The answer is called when this subcommand was chosen, after the options were read;
  /// it owns what they were read into.
  Action (*add)(CLI::App& app);
};

/// In the order of the help.
const std::vector<Subcommand>& subcommands();

} // namespace cli
