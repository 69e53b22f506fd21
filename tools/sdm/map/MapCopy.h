// The device's own copy of the item map, the one that the library opens.
#pragma once

#include <filesystem>

namespace cli
{

/// Copies `source` to `target`. A failure leaves the old `target`. Throws `StartError`.
void copyMap(const std::filesystem::path& source, const std::filesystem::path& target);

} // namespace cli
