// Where the host's services ask whether they are to fail just now. Without faults that is one look at a flag.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace host
{
/// Whether a search for this interface is to find nothing.
[[nodiscard]] bool isAbsentOnDemand(const std::string& interfaceName);

/// The reply to the request `text` in place of the real one; nothing when the request is to be carried out. Waits where
/// that is demanded.
[[nodiscard]] std::optional<std::string> replyOnDemand(const char* text, std::size_t length);

[[nodiscard]] bool encryptionFailsOnDemand();

/// `operation` is for the log.
[[nodiscard]] bool storeRefusesOnDemand(const char* operation);

/// Throws `DiskTrouble` naming the file, as a write to a full disk does.
void requireRoom(const std::filesystem::path& file);
} // namespace host
