// A folder for what need not last. The host platform has one of its own for its copies of databases: it is not part of
// the interface of the host, and this floor knows nothing of the host.
#pragma once

#include <filesystem>
#include <string>

namespace cli
{

/// Goes with all that is in it.
class ScratchFolder
{
public:
  /// Makes it among the system's temporary ones, for its owner alone; `purpose` is a word that its name holds. Throws
  /// `StartError`.
  explicit ScratchFolder(const std::string& purpose);
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& path() const
  {
    return folder;
  }

private:
  std::filesystem::path folder;
};

} // namespace cli
