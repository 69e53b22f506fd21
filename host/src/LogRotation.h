// Keeps the security log to a size: full files are numbered, the oldest goes, and the log itself says so.
#pragma once

#include <cstddef>
#include <filesystem>

#include "Files.h"

namespace host
{
/// A log is continued in a new file when a line would make it longer.
constexpr std::size_t fullLog = 5UL * 1024 * 1024;
/// FILE.1 is the newest.
constexpr std::size_t olderLogs = 4;

/// The name of an older log.
std::filesystem::path olderLog(const std::filesystem::path& file, std::size_t number);

/// Finishes what a power cut interrupted. Throws `Error` naming the file.
void finishRotation(const std::filesystem::path& file);

/// Makes FILE.1 of the log and begins a new one, whose first line says so and how many records were dropped with the
/// oldest file, so far in all. No moment has the line missing where records are. Returns the new file, opened for
/// appending; on the disk then. Throws `Error` naming the file.
FileDescriptor rotated(const std::filesystem::path& file);
} // namespace host
