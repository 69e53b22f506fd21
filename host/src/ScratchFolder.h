// A folder for what need not last.
#pragma once

#include <filesystem>

namespace host
{
/// A new folder of the system's own for such, its owner's alone; it goes with the object, files included.
class ScratchFolder
{
public:
  /// Throws `Error` when there is no place for it.
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& path() const;

private:
  std::filesystem::path folder;
};
} // namespace host
