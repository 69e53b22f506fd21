// Reads whole files: regular ones only, up to a limit. A pipe or a device in place of a file would block the program or
// fill its memory.
#pragma once

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "Descriptor.h"

namespace cli
{

/// Why a file cannot be used, in words that do not name it: "it is no regular file", "it has more than 64 MiB", or the
/// system's own.
class Unusable : public std::runtime_error
{
public:
  /// `itsReason` is the system's number of it, or 0.
  explicit Unusable(const std::string& words, int itsReason = 0) : std::runtime_error(words), reason(itsReason)
  {
  }

  const int reason;
};

/// The largest file that is read, in bytes. No real file of the product comes near it.
constexpr std::size_t largestFile = 64UL * 1024 * 1024;

/// Opens a regular file for reading, without ever waiting for somebody at its other end. Throws `Unusable`; its
/// `reason` is ENOENT when there is no such file.
Descriptor openedRegular(const std::filesystem::path& path);

/// All that comes from a descriptor up to its end; of a pipe as well, and then it waits for it. Throws `Unusable`, also
/// for more than `most` bytes.
std::string wholeContent(int descriptor, std::size_t most = largestFile);

/// The content of a regular file. Throws `Unusable`, as the two above do.
std::string wholeFile(const std::filesystem::path& path, std::size_t most = largestFile);

} // namespace cli
