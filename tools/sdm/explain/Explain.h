// `sdm explain`: where the value of an item came from, out of the history in a device's folder.
#pragma once

#include "base/Subcommand.h"

namespace cli
{

/// Its options and help texts.
Action addExplain(CLI::App& app);

} // namespace cli
