// Writes a file beside its place, syncs it and renames it into place.
#pragma once

#include <filesystem>
#include <string>
#include <sys/types.h>

#include "Descriptor.h"

namespace cli
{

/// A new file beside a place. The destructor removes it unless `takePlace` was called.
class FileBeside
{
public:
  explicit FileBeside(const std::filesystem::path& itsPlace);
  ~FileBeside();
  FileBeside(const FileBeside&) = delete;
  FileBeside& operator=(const FileBeside&) = delete;

  /// Writes the content and syncs it. `mode` is the file mode. Throws `Unusable`.
  void write(const std::string& content, mode_t mode) const;

  /// Sets owner and group. Without the right to do so (only root has it) they stay as they are.
  void giveTo(uid_t user, gid_t group) const;

  /// Renames the file to its place: a reader finds the old content or the new one. Throws `Unusable`.
  void takePlace();

private:
  const std::filesystem::path place;
  std::string name;
  const Descriptor file;
  bool done = false;
};

/// Replaces the content of `path`, synced to the disk. A reader finds the old content or the new one; a failure leaves
/// the old one. The mode is 0600. Throws `Unusable`.
void replaceFile(const std::filesystem::path& path, const std::string& content);

/// Syncs the folder of `path`, so that a rename in it survives a power cut. False on failure; `errno` has the reason.
bool syncFolderOf(const std::filesystem::path& path);

} // namespace cli
