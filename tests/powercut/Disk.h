// A disk with a cache: what was written but not synced is lost when the power goes.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace powercut
{
/// What a cut takes of that which was not synced.
enum class Loss
{
  none,
  all,
  /// A choice that the seed makes, down to single sectors, as disks write in an order of their own.
  some
};

/// Watches the files of one folder. They are kept by name; none of them may have two names for longer than it takes to
/// give it another one.
class Disk
{
public:
  /// Before a file is opened for writing: takes note of what it holds, or that it is made.
  void willOpen(const std::string& path, bool creates, bool truncates);
  void willWrite(const std::string& path, off_t offset, std::string_view bytes);
  void willTruncate(const std::string& path, off_t size);
  void willRename(const std::string& from, const std::string& to);
  void willLink(const std::string& from, const std::string& to);
  void willUnlink(const std::string& path);
  void willMakeFolder(const std::string& path);
  /// The file's content lasts from now on; of a folder, its entries.
  void didSync(const std::string& path);

  /// Takes from the real files what the cut loses.
  void lose(Loss loss, std::uint64_t seed);

private:
  /// A write, or with no bytes a new size.
  struct Change
  {
    off_t offset;
    std::optional<std::string> bytes;
  };
  struct File
  {
    std::string lasting;
    std::vector<Change> changes;
  };
  /// A change of a folder that does not last yet, and how it is taken back.
  struct Entry
  {
    std::string folder;
    std::function<void()> undo;
  };

  File& fileAt(const std::string& path);
  void addEntry(const std::string& path, std::function<void()> undo);
  static void apply(std::string& content, const Change& change);

  std::map<std::string, File> files;
  std::vector<Entry> entries;
};

std::string folderOf(const std::string& path);
} // namespace powercut
