// The key under the encrypted values.
#pragma once

#include <DasCrypt.h>

#include <filesystem>

#include "host/HostExport.h"

namespace host
{
/// Takes the key of this process's `DasCrypt` from a file. A file that is not there is made with a new random key, mode
/// 0600, at once or not at all. Throws `Error` naming the file when it cannot be read or made, is not of the size of a
/// key, or is open to others than its owner; the key in use then stays. May be called from any thread.
///
/// Until a key is there `DasCrypt` fails.
SDM_HOST_EXPORT void useKeyFile(const std::filesystem::path& file);

/// Wipes the key from memory; `DasCrypt` fails from now on.
SDM_HOST_EXPORT void forgetKey();
} // namespace host
