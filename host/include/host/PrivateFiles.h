// Files of a device hold passwords, so they are their owner's alone, whatever the process's umask lets others do.
#pragma once

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "host/HostExport.h"

namespace host
{
/// Opens `file` as open(2) does with `flags`, to be closed with the process's programs (`O_CLOEXEC`), and makes it when
/// it is not there. A regular file is 0600 from the moment others can see it; one that was open to others is closed to
/// them, as far as this process may. The umask stays as it is. Returns the descriptor, the caller's to close; negative
/// with the reason in `errno` when the file cannot be opened.
SDM_HOST_EXPORT int openPrivate(const std::filesystem::path& file, int flags);

/// Makes `folder` and those above it that are not there, each 0700; what is there stays as it is. Returns why one of
/// them cannot be made or is no folder; no error otherwise. An empty path is the current folder.
SDM_HOST_EXPORT std::error_code makePrivateFolders(const std::filesystem::path& folder);

/// Closes the regular files of `folder` to others whose name is one of `names`, or goes on behind it with a full stop
/// or a hyphen, as files kept aside, rotated or beside a database do. Links are not followed. Returns sentences for the
/// operator: one about all that were open, and one about each that could not be closed; none when all was well.
SDM_HOST_EXPORT std::vector<std::string> closeToOthers(const std::filesystem::path& folder,
                                                       const std::vector<std::string>& names);

/// A sentence for the operator when group or others may enter, read or change the folder; empty otherwise.
SDM_HOST_EXPORT std::string openFolder(const std::filesystem::path& folder);
} // namespace host
