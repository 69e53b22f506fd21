// The texts of the rules, by subject.
#pragma once

#include <vector>

#include "Rules.h"

namespace cli::diff
{

/// Items that come, go, or get another name or store.
std::vector<Rule> itemRules();
/// Cells and schemas of the database.
std::vector<Rule> cellRules();
/// Defaults, encryption, groups and user data.
std::vector<Rule> valueRules();
/// Setters and getters.
std::vector<Rule> callbackRules();
/// Lines of which another one counts, and columns without effect.
std::vector<Rule> lineRules();

} // namespace cli::diff
