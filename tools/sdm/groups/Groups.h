// `sdm groups`: the validation groups of a map, and whether the order of a request's items matters to them.
#pragma once

#include "base/Subcommand.h"

namespace cli
{

/// Its options and help texts.
Action addGroups(CLI::App& app);

} // namespace cli
