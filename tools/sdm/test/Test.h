// `sdm test`: runs all transcripts of a folder as tests.
#pragma once

#include "base/Subcommand.h"

namespace cli
{

/// Its options and help texts.
Action addTest(CLI::App& app);

} // namespace cli
