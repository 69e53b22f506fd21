// Suggests known words for one that is unknown.
#pragma once

#include <string>
#include <vector>

namespace cli
{

/// The known words that are near enough, nearest first, three at most. Near are words that differ in few
/// letters, counting neighbours swapped as one, and longer words that hold the unknown one.
std::vector<std::string> suggestions(const std::string& unknown, const std::vector<std::string>& known);

/// "did you mean a or b?" and `end`, or nothing at all.
std::string didYouMean(const std::string& unknown, const std::vector<std::string>& known, const std::string& end = "");

} // namespace cli
