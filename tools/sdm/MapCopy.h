// The device's own copy of the item map, the one that the library opens.
#pragma once

#include <filesystem>

namespace cli
{

/// The map to use when none is named: beside the program, where it is installed, or in the tree it was built
/// from. The last of these when none is there, so that its absence is reported.
std::filesystem::path sampleMap();

/// Makes `target` hold what `source` holds, at once or not at all; leaves it alone when it does already. Throws
/// `StartError`.
void copyMap(const std::filesystem::path& source, const std::filesystem::path& target);

} // namespace cli
