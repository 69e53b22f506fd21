// Brings a device up and carries out commands, line by line.
#pragma once

#include "base/Subcommand.h"
#include "device/RunSettings.h"

namespace cli
{

/// Takes commands from standard input until it ends. Throws what keeps the device from coming up.
ExitCode runDevice(const RunSettings& settings);

} // namespace cli
