// `sdm new`: writes the project of a service from its item map.
#pragma once

#include "base/Subcommand.h"

namespace cli
{

/// Its options and help texts.
Action addNew(CLI::App& app);

} // namespace cli
