// `sdm diff`: tells what a new item map changes for devices that run with an old one.
#pragma once

#include <string>
#include <vector>

#include "base/Subcommand.h"
#include "findings/Formats.h"

namespace cli
{

namespace diff
{

struct DiffSettings
{
  /// Two files; one when the other side comes from git; or what git hands to a program that shows differences.
  std::vector<std::string> maps;
  /// The commit that the old map is taken from; empty: it is a file.
  std::string against;
  findings::Format format = findings::Format::text;
  findings::FailOn failOn = findings::FailOn::note;
  /// The program was called by git, which stops at every exit code but 0.
  bool forGit = false;
  /// The files of accepted changes; empty: none.
  std::string accept;
  std::string writeAccept;
};

/// Whether that many arguments are those that git hands to a program that shows differences.
bool isFromGit(std::size_t arguments);

ExitCode compareMaps(const DiffSettings& settings);

} // namespace diff

/// Its options and help texts.
Action addDiff(CLI::App& app);

} // namespace cli
