// A SQLite file as a connection: opened or made, checked, laid out, durable.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Connection.h"
#include "host/Disk.h"
#include "host/Storage.h"

struct sqlite3;

namespace host
{
/// The name of its errors is the file's.
class Database final : public Connection
{
public:
  /// Opens the file or makes it. A new one gets `applicationId`, which tells what it is for, and the layout that the
  /// statements make; an existing one must bear that id and be sound. From then on a commit returns when it is on the
  /// disk. With `Storage::copy` the file stays as it is: a copy of it is opened, or when that cannot be an empty
  /// database, and neither takes changes: each is refused with `whyCopied`, in words for the operator. `disk`
  /// (borrowed) is asked before each change of the file; null for nobody.
  Database(const std::filesystem::path& file, int applicationId, const std::vector<std::string>& layout,
           Storage storage = Storage::file, const std::string& whyCopied = "", Disk* disk = nullptr);

  /// Lets a copy take changes, which go with it, or not; a file always does.
  void allowChangesOfCopy(bool allowed);

private:
  void beforeChange() override;
  int systemError() override;
  void openDriver(const std::string& text);
  void openFile();
  void openCopy();
  void requireSound();
  void requireWritable();
  void prepareForDurability();
  void layOut(int applicationId, const std::vector<std::string>& layout);

  const std::filesystem::path file;
  const Storage storage;
  const std::string refusal;
  Disk* const disk;
  bool copyTakesChanges = true;
  /// The driver's; null while none is open.
  sqlite3* handle = nullptr;
};
} // namespace host
