// `sdm check`: tells what is wrong with item maps.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Finding.h"
#include "base/Subcommand.h"
#include "findings/Formats.h"

namespace cli
{

namespace check
{

struct CheckSettings
{
  std::vector<std::string> maps;
  findings::Format format = findings::Format::text;
  /// From which severity on the exit code tells of a finding.
  findings::FailOn failOn = findings::FailOn::error;
  bool fix = false;
  /// The shared object of a service that the maps are tried with; nothing given: none.
  std::optional<std::filesystem::path> service;
  /// Rules that are not looked at.
  std::vector<std::string> ignored;
};

ExitCode checkMaps(const CheckSettings& settings);

} // namespace check

Action addCheck(CLI::App& app);

} // namespace cli
