// A folder that one process has to itself.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Files.h"

namespace host
{
/// Holds the folder and the file `lock` in it. The system takes both back when the process ends, in whatever way.
class LockedFolder
{
public:
  /// Throws `Error` when another process has it, or it cannot be locked.
  explicit LockedFolder(const std::filesystem::path& path);

  /// Writes down which of these files are there, for whoever comes next. On a disk that takes no changes nothing is
  /// written.
  void noteFiles(const std::vector<std::string>& names);

  /// Forgets the files, since from here on they may go.
  void forgetFiles();

  /// Those of these files that were there when the process before ended without forgetting them, and are not there now.
  std::vector<std::string> missingOf(const std::vector<std::string>& names) const;

private:
  [[noreturn]] void inUse() const;
  void write(const std::string& text);

  const std::filesystem::path path;
  FileDescriptor folder;
  FileDescriptor file;
};
} // namespace host
