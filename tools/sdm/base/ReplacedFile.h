// Files as they are written: beside the place first, then put there whole.
#pragma once

#include <filesystem>
#include <string>
#include <sys/types.h>

#include "Descriptor.h"

namespace cli
{

/// A file of its own beside a place; gone in the end unless it took that place.
class FileBeside
{
public:
  explicit FileBeside(const std::filesystem::path& itsPlace);
  ~FileBeside();
  FileBeside(const FileBeside&) = delete;
  FileBeside& operator=(const FileBeside&) = delete;

  /// Fills it for good. `mode` has its permissions. Throws `Unusable`.
  void write(const std::string& content, mode_t mode) const;

  /// Gives it away as far as the system allows that: only root can.
  void giveTo(uid_t user, gid_t group) const;

  /// Whoever opens the place finds the old content or the new one. Throws `Unusable`.
  void takePlace();

private:
  const std::filesystem::path place;
  std::string name;
  const Descriptor file;
  bool done = false;
};

/// Makes `path` hold `content`, for good: whoever opens it finds the old content or the new one, and a failure leaves
/// the old one. The file is its owner's alone. Throws `Unusable`.
void replaceFile(const std::filesystem::path& path, const std::string& content);

/// Makes entries of the folder that holds `path` last. False when the system refuses; the reason is in `errno`.
bool syncFolderOf(const std::filesystem::path& path);

} // namespace cli
