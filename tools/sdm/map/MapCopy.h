// The device's own copy of the item map, the one that the library opens.
#pragma once

#include <filesystem>

namespace cli
{

/// Makes `target` hold what `source` holds, at once or not at all. Throws `StartError`.
void copyMap(const std::filesystem::path& source, const std::filesystem::path& target);

} // namespace cli
