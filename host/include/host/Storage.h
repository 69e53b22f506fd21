// Where a database keeps what it is told.
#pragma once

namespace host
{
/// For good, or for now.
enum class Storage
{
  /// In its file, for good.
  file,
  /// In a copy that nobody else sees and that goes with its owner: for a disk that takes no changes. What the file
  /// holds can be read as far as the file can; updates are refused.
  copy
};
} // namespace host
