// Writes the file of a transcript, line by line.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "base/Descriptor.h"

namespace cli::transcript
{

/// May be used by one thread at a time. The lines go into the file NAME.part beside the place, which takes that place
/// when all are there: who asks for a transcript of a run that does not come up, or is cut off, keeps the one he has.
/// A device such as /dev/null has no place to be taken, and is written as it is.
class TranscriptFile
{
public:
  /// Makes the file beside the place; it is its owner's alone, since values stand in it. Throws `StartError`, also when
  /// one of the two is there already, unless it may be overwritten.
  TranscriptFile(const std::filesystem::path& itsPath, bool mayOverwrite);

  /// Removes what was written, unless it took its place or lacks its end because of trouble.
  ~TranscriptFile();
  TranscriptFile(const TranscriptFile&) = delete;
  TranscriptFile& operator=(const TranscriptFile&) = delete;

  /// Adds a line and its end. After a failure nothing more is written.
  void write(const std::string& line);

  /// Puts what was written into its place, for good.
  void finish();

  /// What is missing, and where the rest stands, when the program ends before `finish`.
  std::string unfinished() const;

  /// Why something is missing in the file, with its name; empty when nothing is.
  const std::string& trouble() const
  {
    return failure;
  }

  /// Where the lines of a transcript with this name stand until it is finished.
  static std::filesystem::path partOf(const std::filesystem::path& path);

private:
  int opened();
  bool takePlace();
  void fail(const std::string& why);
  std::string whereItStands() const;

  const std::filesystem::path path;
  const bool overwrites;
  /// Empty for a device.
  const std::filesystem::path part;
  const Descriptor file;
  std::size_t size = 0;
  bool finished = false;
  std::string failure;
};

} // namespace cli::transcript
