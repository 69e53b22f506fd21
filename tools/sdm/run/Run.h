// `sdm run`: brings a device up, then does what it is told, line by line.
#pragma once

#include "RunSettings.h"
#include "Subcommand.h"

namespace cli
{

/// Its options and help texts.
Action addRun(CLI::App& run);

/// Takes commands from standard input until it ends. Throws what keeps the device from coming up.
ExitCode runDevice(const RunSettings& settings);

} // namespace cli
