// Whether a map is fit to make something from.
#pragma once

#include <string>
#include <vector>

namespace cli
{

/// What is wrong with lines of a map's content, one text a line with its number: lines that would be cut or skipped,
/// and what turns encryption off by mistake. Empty for a map that is fit.
std::vector<std::string> unfitLines(const std::string& map);

} // namespace cli
