// What a service makes of a map, as findings about its lines.
#pragma once

#include <filesystem>
#include <vector>

#include "Finding.h"
#include "base/Progress.h"

namespace cli::check
{

/// Tries the service on the map as it stands, and tells what goes against these rules, in no order. A finding about the
/// service as a whole is at the beginning of the file. Throws `StartError` when the service cannot be loaded. To be
/// called while the process has one thread.
std::vector<Finding> serviceFindings(const MapText& map, const std::filesystem::path& service,
                                     const std::vector<const Rule*>& rules, Progress& progress);

} // namespace cli::check
