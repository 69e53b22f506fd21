// `sdm run`: the command line of a device that is brought up and told what to do.
#pragma once

#include "base/Subcommand.h"

namespace cli
{

/// Its options and help texts.
Action addRun(CLI::App& run);

} // namespace cli
