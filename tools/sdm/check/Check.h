// `sdm check`: tells what is wrong with item maps.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Finding.h"
#include "base/Subcommand.h"

namespace cli
{

namespace check
{

enum class Format
{
  text,
  json,
  sarif
};

struct CheckSettings
{
  std::vector<std::string> maps;
  Format format = Format::text;
  /// Warnings count as errors.
  bool strict = false;
  bool fix = false;
  /// The shared object of a service that the maps are tried with; nothing given: none.
  std::optional<std::filesystem::path> service;
  /// Rules that are not looked at.
  std::vector<std::string> ignored;
};

ExitCode checkMaps(const CheckSettings& settings);

/// The long explanation of one rule.
void explainRule(const Rule& rule, Format format);

/// All rules, a line each.
void listRules(Format format);

} // namespace check

Action addCheck(CLI::App& app);

} // namespace cli
