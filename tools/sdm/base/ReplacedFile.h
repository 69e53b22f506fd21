// Files as they are written: beside the place first, then put there whole.
#pragma once

#include <filesystem>
#include <string>

namespace cli
{

/// Makes `path` hold `content`, for good: whoever opens it finds the old content or the new one, and a failure leaves
/// the old one. The file is its owner's alone. Throws `Unusable`.
void replaceFile(const std::filesystem::path& path, const std::string& content);

/// Makes entries of the folder that holds `path` last. False when the system refuses; the reason is in `errno`.
bool syncFolderOf(const std::filesystem::path& path);

} // namespace cli
