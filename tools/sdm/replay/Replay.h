// `sdm replay`: runs the commands of a transcript again and shows the first difference.
#pragma once

#include <ostream>

#include "ReplayedRun.h"
#include "base/Style.h"
#include "base/Subcommand.h"

namespace cli
{

/// Its options and help texts.
Action addReplay(CLI::App& app);

namespace replay
{

/// The options that `sdm test` has as well, read into `settings`.
void addReplayOptions(CLI::App& app, ReplaySettings& settings);

} // namespace replay
} // namespace cli
