// Damaged files are kept: somebody may still save something from them.
#pragma once

#include <filesystem>

#include "host/HostExport.h"

namespace host
{
/// Gives the file, and what a database keeps beside it, a name of its own: "FILE.damaged-1", or the next number that is
/// free. Nothing is overwritten. Returns the new name; on the disk when it returns. Throws `Error` naming the file when
/// it cannot be renamed.
SDM_HOST_EXPORT std::filesystem::path keepAside(const std::filesystem::path& file);
} // namespace host
