// The folder of a device before anything in it is opened.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace host
{
/// The folder, made with its parents when it is not there, and lasting. Throws `Error` when it cannot be made.
std::filesystem::path existingFolder(const std::filesystem::path& folder);

/// Closes the files of a device, its log included, to others than their owner. Returns what the operator has to know of
/// that, a sentence each.
std::vector<std::string> closedToOthers(const std::filesystem::path& folder);
} // namespace host
