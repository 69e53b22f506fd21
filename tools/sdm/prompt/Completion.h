// Completion by Tab.
#pragma once

#include <string>
#include <vector>

#include "map/ItemTable.h"

namespace cli
{

/// The words that the last word of `line` may become: commands first, then what the command expects in that
/// place. Values are not offered.
std::vector<std::string> completions(const std::string& line, const ItemTable& items);

} // namespace cli
