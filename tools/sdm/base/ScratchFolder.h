// A temporary folder. The host platform has one of its own for its copies of databases: it is not part of
// the interface of the host, and this floor knows nothing of the host.
#pragma once

#include <filesystem>
#include <string>

namespace cli
{

/// Removes the folder with all its content at the end of its life.
class ScratchFolder
{
public:
  /// Makes the folder below the system's folder for temporary files, with mode 0700. `purpose` is part of its name.
  /// Throws `StartError`.
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
