// Reasons that both sides know.
#pragma once

#include <string>

namespace RejectReasonsStrings
{
extern const std::string unchanged_data;
extern const std::string not_changed;
extern const std::string out_of_range;
} // namespace RejectReasonsStrings
