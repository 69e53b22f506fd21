// The file that a transcript goes into, a line at a time.
#pragma once

#include <filesystem>
#include <string>

#include "Descriptor.h"

namespace cli::record
{

/// May be used by one thread at a time.
class TranscriptFile
{
public:
  /// Makes the file, or empties it. It is its owner's alone, since values stand in it. Throws `StartError`.
  explicit TranscriptFile(const std::filesystem::path& itsPath);

  /// Adds a line and its end. After a failure nothing more is written.
  void write(const std::string& line);

  /// Why something is missing in the file, with its name; empty when nothing is.
  const std::string& trouble() const
  {
    return failure;
  }

private:
  void fail(int reason);

  const std::filesystem::path path;
  const Descriptor file;
  std::string failure;
};

} // namespace cli::record
