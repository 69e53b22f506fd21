#include "Database.h"

#include <tuple>
#include <unordered_map>
#include <utility>

#include <soci/soci.h>
#include <soci/sqlite3/soci-sqlite3.h>

#include <cstdint>
#include <sstream>

#include "FaultLayer.h"
#include "Files.h"
#include "ScratchFolder.h"
#include "Trouble.h"
#include <logAppUni.h>

namespace host
{
namespace
{
/// The driver takes a text without "=" as the file's name and any other as options, where a name in quotes may hold
/// anything but quotes.
std::string connectionText(const std::filesystem::path& file)
{
  std::string name = file.string();
  if (name.find('=') == std::string::npos)
    return name;
  if (name.find('"') != std::string::npos)
    throw Error(name + ": the name of a database cannot hold both \"=\" and a quote");
  return "db=\"" + name + "\"";
}

/// The driver puts the name of its own operation in front of the database's words.
std::string reasonOf(const soci::soci_error& error)
{
  const std::string message = error.get_error_message();
  const std::size_t end = message.rfind("sqlite3_", 0) == 0 ? message.find(": ") : std::string::npos;
  return end == std::string::npos ? message : message.substr(end + 2);
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

/// The error as one that says what can be done about it.
[[noreturn]] void throwOurs(const std::filesystem::path& file, const soci::soci_error& error)
{
  const std::string text = file.string() + ": " + reasonOf(error);
  const auto* own = dynamic_cast<const soci::sqlite3_soci_error*>(&error);
  switch (own == nullptr ? SQLITE_ERROR : own->result() & 0xFF)
  {
  case SQLITE_CORRUPT:
  case SQLITE_NOTADB:
  case SQLITE_FORMAT:
    throw DamagedFile(text);
  case SQLITE_FULL:
    throw DiskTrouble(text + "; make room on its disk");
  case SQLITE_CANTOPEN:
  case SQLITE_IOERR:
    throw DiskTrouble(text + "; look whether its disk is full or broken, and make it and its folder writable");
  case SQLITE_READONLY:
  case SQLITE_PERM:
    throw DiskTrouble(text + "; make it and its folder writable");
  default:
    throw Error(text);
  }
}

/// A statement with room for what goes in and comes out; compiled once, run as often as wanted.
class PreparedStatement
{
public:
  PreparedStatement(soci::session& session, const std::string& sql, std::size_t columns, std::size_t values)
      : inputs(values), texts(columns), indicators(columns, soci::i_ok), statement(session)
  {
    for (std::size_t i = 0; i < columns; ++i)
      statement.exchange(soci::into(texts[i], indicators[i]));
    for (const std::string& input : inputs)
      statement.exchange(soci::use(input));
    statement.alloc();
    statement.prepare(sql);
    statement.define_and_bind();
  }

  void run(const Database::Values& values)
  {
    inputs = values;
    statement.execute(texts.empty());
  }

  bool fetch(Database::Row& row)
  {
    if (!statement.fetch())
      return false;
    row.resize(texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i)
      row[i] = indicators[i] == soci::i_ok ? std::make_optional(texts[i]) : std::nullopt;
    return true;
  }

private:
  Database::Values inputs;
  std::vector<std::string> texts;
  std::vector<soci::indicator> indicators;
  soci::statement statement;
};

/// The same requests come again and again; those for making and changing tables do not.
constexpr std::size_t statementsToKeep = 64;
constexpr std::size_t longestToKeep = 16384;
} // namespace

struct Database::Content
{
  std::filesystem::path file;
  Storage storage = Storage::file;
  soci::session session;
  std::unordered_map<std::string, PreparedStatement> statements;

  PreparedStatement& prepared(const std::string& sql, std::size_t columns, std::size_t values)
  {
    const auto known = statements.find(sql);
    if (known != statements.end())
      return known->second;
    if (statements.size() == statementsToKeep)
      statements.clear();
    return statements
        .emplace(std::piecewise_construct, std::forward_as_tuple(sql),
                 std::forward_as_tuple(session, sql, columns, values))
        .first->second;
  }

  /// Values may be large, and nothing of a statement that failed is to be left open.
  void forget(const std::string& sql)
  {
    statements.erase(sql);
  }

  /// Runs `action`, turning the driver's errors into ours. Its full text shows bound values, the message alone does
  /// not.
  template <typename Action>
  auto guarded(Action action) -> decltype(action())
  {
    try
    {
      return action();
    }
    catch (const soci::soci_error& error)
    {
      throwOurs(file, error);
    }
  }
};

Database::Database(const std::filesystem::path& file, int applicationId, const std::vector<std::string>& layout,
                   Storage storage)
    : content(std::make_unique<Content>())
{
  content->file = file;
  content->storage = storage;
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

void Database::openFile()
{
  const std::string connection = connectionText(content->file);
  content->guarded([&] { content->session.open(soci::sqlite3, connection); });
  prepareForDurability();
  requireSound();
}

void Database::openCopy()
{
  try
  {
    const ScratchFolder folder;
    const std::filesystem::path copy = folder.path() / "copy.db";
    std::filesystem::copy_file(content->file, copy);
    // What was committed last may stand there alone.
    if (std::filesystem::exists(content->file.string() + "-wal"))
      std::filesystem::copy_file(content->file.string() + "-wal", copy.string() + "-wal");
    content->guarded([&] { content->session.open(soci::sqlite3, connectionText(copy)); });
    requireSound();
    // Everything in the one file that is open, so that the folder can go.
    select("PRAGMA journal_mode = DELETE", 1);
    select("PRAGMA journal_mode = MEMORY", 1);
    select("SELECT COUNT(*) FROM sqlite_master", 1);
  }
  catch (const std::exception& error)
  {
    logAppUni("HostPlatform", "host/src/Database", 2, __LINE__, "nothing of %s can be read: %s", content->file.c_str(),
              error.what());
    content->statements.clear();
    content->session.close();
    content->guarded([&] { content->session.open(soci::sqlite3, ":memory:"); });
  }
}

void Database::requireSound()
{
  std::error_code unknown;
  if (const std::uintmax_t size = std::filesystem::file_size(content->file, unknown); unknown || size > largestChecked)
    return;
  for (const Row& row : select("PRAGMA integrity_check", 1))
    if (const std::string complaint = firstComplaint(row.front().value_or("")); !complaint.empty())
      throw DamagedFile(content->file.string() + ": is damaged: " + complaint);
}

void Database::allowChangesOfCopy(bool allowed)
{
  if (content->storage == Storage::copy)
    execute(allowed ? "PRAGMA query_only = OFF" : "PRAGMA query_only = ON");
}

Database::~Database() = default;

void Database::prepareForDurability()
{
  // Another process, such as someone looking at the file, may hold it for a moment.
  select("PRAGMA busy_timeout = 2000", 1);
  select("PRAGMA journal_mode = WAL", 1);
  execute("PRAGMA synchronous = FULL");
}

void Database::layOut(int applicationId, const std::vector<std::string>& layout)
{
  const std::string expected = std::to_string(applicationId);
  if (select("PRAGMA application_id", 1).at(0).at(0) == expected)
    return;
  if (select("SELECT COUNT(*) FROM sqlite_master", 1).at(0).at(0) != "0")
    throw Error(content->file.string() + ": is a database of another kind");
  Transaction transaction(*this);
  for (const std::string& statement : layout)
    execute(statement);
  execute("PRAGMA application_id = " + expected);
  transaction.commit();
}

void Database::execute(const std::string& sql, const Values& values)
{
  if (content->storage == Storage::file && sql != "ROLLBACK")
    requireRoom(content->file);
  run(sql, 0, values);
}

std::vector<Database::Row> Database::select(const std::string& sql, std::size_t columns, const Values& values)
{
  return run(sql, columns, values);
}

std::vector<Database::Row> Database::run(const std::string& sql, std::size_t columns, const Values& values)
{
  std::size_t length = sql.size();
  for (const std::string& value : values)
    length += value.size();
  std::vector<Row> rows;
  try
  {
    content->guarded(
        [&]
        {
          PreparedStatement& statement = content->prepared(sql, columns, values.size());
          statement.run(values);
          for (Row row; columns > 0 && statement.fetch(row); row.clear())
          {
            for (const auto& cell : row)
              length += cell ? cell->size() : 0;
            rows.push_back(std::move(row));
          }
        });
  }
  catch (...)
  {
    content->forget(sql);
    throw;
  }
  if (length > longestToKeep)
    content->forget(sql);
  return rows;
}

// The driver keeps the description of this type to itself, so nobody can check it at run time.
__attribute__((no_sanitize("vptr"))) bool Database::isInTransaction()
{
  auto* backend = static_cast<soci::sqlite3_session_backend*>(content->session.get_backend());
  return sqlite_api::sqlite3_get_autocommit(backend->conn_) == 0;
}

Database::Transaction::Transaction(Database& databaseToChange) : database(databaseToChange)
{
  // Takes the write lock at once, so that what is read within still holds when it is written.
  database.execute("BEGIN IMMEDIATE");
}

Database::Transaction::~Transaction()
{
  // Some errors make the database roll back by itself; nothing is left to undo then.
  if (!open || !database.isInTransaction())
    return;
  try
  {
    database.execute("ROLLBACK");
  }
  catch (const std::exception& error)
  {
    logAppUni("HostPlatform", "host/src/Database", 2, __LINE__, "rollback failed: %s", error.what());
  }
}

void Database::Transaction::commit()
{
  database.execute("COMMIT");
  open = false;
}

std::string quoted(const std::string& identifier)
{
  std::string text = "\"";
  for (const char character : identifier)
  {
    if (character == '"')
      text += '"';
    text += character;
  }
  return text + '"';
}
} // namespace host
