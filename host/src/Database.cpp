// A file is checked, and tried to be written, before anybody relies on it; of a copy the name goes, so nobody else sees
// it.
#include "Database.h"

#include <fcntl.h>
#include <sqlite3.h>

#include <cerrno>
#include <cstdint>
#include <sstream>

#include "Files.h"
#include "Log.h"
#include "ScratchFolder.h"
#include "SqliteDialect.h"
#include "SqliteHandle.h"
#include "Trouble.h"
#include "host/PrivateFiles.h"

namespace host
{
namespace
{
/// The database's library would make the file open to others. What it makes beside the file gets the file's mode. A
/// file that is there stays closed here: closing it would end the locks that this process has on it. Why a file cannot
/// be made the library tells, and one name is no file for it.
void makeFile(const std::filesystem::path& file)
{
  if (file == ":memory:")
    return;
  std::error_code unknown;
  if (std::filesystem::symlink_status(file, unknown).type() != std::filesystem::file_type::not_found)
    return;
  const FileDescriptor made(openPrivate(file, O_RDWR));
}

/// The database's library makes this file first of all, and does not say why it cannot: a full disk looks like a folder
/// that may not be written. An empty one is none to it.
void makeChangesFile(const std::filesystem::path& file)
{
  const std::filesystem::path changes = file.string() + "-wal";
  std::error_code unknown;
  if (file == ":memory:" || std::filesystem::exists(changes, unknown))
    return;
  const FileDescriptor made(openPrivate(changes, O_RDWR));
  const int reason = errno;
  if (!made.isOpen() && !remedyOf(reason).empty())
    throwSystemError(file, "its changes cannot be written", reason);
}

// All of it is read for a check. Configuration is never that large, and what is has to be left to be found out.
constexpr std::uintmax_t largestChecked = 64UL * 1024 * 1024;

bool begins(const std::string& text, const std::string& with)
{
  return text.compare(0, with.size(), with) == 0;
}

bool ends(const std::string& text, const std::string& with)
{
  return text.size() >= with.size() && text.compare(text.size() - with.size(), with.size(), with) == 0;
}

/// What a row of the database's own check complains of; a page that nobody uses is wasted, but no loss.
std::string firstComplaint(const std::string& row)
{
  std::istringstream lines(row);
  for (std::string line; std::getline(lines, line);)
    if (line != "ok" && !begins(line, "***") && !ends(line, "is never used"))
      return line;
  return "";
}
} // namespace

Database::Database(const std::filesystem::path& itsFile, int applicationId, const std::vector<std::string>& layout,
                   Storage itsStorage, const std::string& whyCopied, Disk* itsDisk)
    : Connection(itsFile.string(), sqliteDialect()),
      file(itsFile),
      storage(itsStorage),
      refusal(whyCopied),
      disk(itsDisk)
{
  // The database's own code opens each of them, and would wait for whoever writes into a pipe.
  for (const char* part : {"", "-wal", "-shm", "-journal"})
    requireRegular(file.string() + part);
  if (storage == Storage::copy)
  {
    openCopy();
    layOut(applicationId, layout);
    allowChangesOfCopy(false);
    return;
  }
  openFile();
  layOut(applicationId, layout);
  syncFolderOf(file);
}

void Database::beforeChange()
{
  if (storage == Storage::file && disk != nullptr)
    disk->beforeChange(file);
  // Later answers give the reason that the start gave, and not that the copy may not be written.
  if (storage == Storage::copy && !copyTakesChanges && !refusal.empty())
    throw DiskTrouble(refusal);
}

int Database::systemError()
{
  return handle == nullptr ? 0 : sqlite3_system_errno(handle);
}

void Database::openDriver(const std::string& text)
{
  handle = nullptr;
  handle = handleOpenedBy([&] { open(text); });
}

void Database::requireWritable()
{
  try
  {
    // To begin is not enough: of a file that can only be read that begins a transaction that reads.
    const Transaction trial(*this);
    executeOnce("PRAGMA user_version = 0");
  }
  catch (const BusyDatabase&)
  {
    // Somebody else writes, so it can be written.
  }
}

void Database::openFile()
{
  const std::string connection = SqliteDialect::connectionText(file);
  makeFile(file);
  makeChangesFile(file);
  openDriver(connection);
  prepareForDurability();
  requireSound();
  requireWritable();
}

void Database::openCopy()
{
  try
  {
    const ScratchFolder folder;
    const std::filesystem::path copy = folder.path() / "copy.db";
    std::filesystem::copy_file(file, copy);
    // What was committed last may stand there alone.
    if (std::filesystem::exists(file.string() + "-wal"))
      std::filesystem::copy_file(file.string() + "-wal", copy.string() + "-wal");
    openDriver(SqliteDialect::connectionText(copy));
    requireSound();
    // Everything in the one file that is open, so that the folder can go.
    select("PRAGMA journal_mode = DELETE", 1);
    select("PRAGMA journal_mode = MEMORY", 1);
    select("SELECT COUNT(*) FROM sqlite_master", 1);
  }
  catch (const std::exception& error)
  {
    SDM_HOST_LOG(2, "nothing of %s can be read: %s", file.c_str(), error.what());
    close();
    openDriver(":memory:");
  }
}

void Database::requireSound()
{
  std::error_code unknown;
  if (const std::uintmax_t size = std::filesystem::file_size(file, unknown); unknown || size > largestChecked)
    return;
  for (const Row& row : select("PRAGMA integrity_check", 1))
    if (const std::string complaint = firstComplaint(row.front().value_or("")); !complaint.empty())
      throw DamagedFile(file.string() + ": is damaged: " + complaint);
}

void Database::allowChangesOfCopy(bool allowed)
{
  if (storage != Storage::copy)
    return;
  copyTakesChanges = true;
  executeOnce(allowed ? "PRAGMA query_only = OFF" : "PRAGMA query_only = ON");
  copyTakesChanges = allowed;
}

void Database::prepareForDurability()
{
  // Another process, such as someone looking at the file, may hold it for a moment.
  select("PRAGMA busy_timeout = 2000", 1);
  select("PRAGMA journal_mode = WAL", 1);
  executeOnce("PRAGMA synchronous = FULL");
}

void Database::layOut(int applicationId, const std::vector<std::string>& layout)
{
  const std::string expected = std::to_string(applicationId);
  if (select("PRAGMA application_id", 1).at(0).at(0) == expected)
    return;
  if (select("SELECT COUNT(*) FROM sqlite_master", 1).at(0).at(0) != "0")
    throw Error(file.string() + ": is a database of another kind");
  Transaction transaction(*this);
  for (const std::string& statement : layout)
    executeOnce(statement);
  executeOnce("PRAGMA application_id = " + expected);
  transaction.commit();
}
} // namespace host
