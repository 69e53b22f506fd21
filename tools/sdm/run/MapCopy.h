// The device's own copy of the item map, the one that the library opens.
#pragma once

#include <filesystem>

namespace cli
{

/// The map to use when none is named: beside the program, in the share folder beside the program's, or where it was
/// meant to be installed. The last of these when none is there, so that its absence is reported.
std::filesystem::path sampleMap();

/// Makes `target` hold what `source` holds, at once or not at all; leaves it alone when it does already. Throws
/// `StartError`.
void copyMap(const std::filesystem::path& source, const std::filesystem::path& target);

} // namespace cli
