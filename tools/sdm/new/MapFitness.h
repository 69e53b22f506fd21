// Whether a map is fit to make something from.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace cli
{

/// What is wrong with lines of a map, one text a line with its number: lines that would be cut or skipped, and what
/// turns encryption off by mistake. Empty for a map that is fit. Throws `StartError` when it cannot be read.
std::vector<std::string> unfitLines(const std::filesystem::path& map);

} // namespace cli
