// What the program was asked to do on its command line.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <variant>

namespace cli
{

/// How the program ends; told by `--help` as well.
enum ExitCode : int
{
  exitDone = 0,
  exitRefused = 1,
  exitUsage = 2,
  exitNoDevice = 3
};

struct RunSettings
{
  /// Nothing given: the sample service's own map.
  std::optional<std::filesystem::path> map;
  std::filesystem::path device = "device";
  std::uint32_t interfaces = 1;
  int logLevel = 2;
};

/// Reads the command line. When there is nothing to run (help, version, wrong usage) the text was written and
/// the exit code is the answer.
std::variant<RunSettings, ExitCode> readArguments(int argc, const char* const* argv);

} // namespace cli
