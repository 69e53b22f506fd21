#include "Database.h"

#include <soci/soci.h>
#include <soci/sqlite3/soci-sqlite3.h>

#include "Files.h"
#include "host/Error.h"
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
} // namespace

struct Database::Content
{
  std::filesystem::path file;
  soci::session session;

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
      throw Error(file.string() + ": " + reasonOf(error));
    }
  }
};

Database::Database(const std::filesystem::path& file, int applicationId, const std::vector<std::string>& layout)
    : content(std::make_unique<Content>())
{
  content->file = file;
  const std::string connection = connectionText(file);
  content->guarded([&] { content->session.open(soci::sqlite3, connection); });
  prepareForDurability();
  layOut(applicationId, layout);
  syncFolderOf(file);
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
  content->guarded(
      [&]
      {
        soci::statement statement(content->session);
        for (const std::string& value : values)
          statement.exchange(soci::use(value));
        statement.alloc();
        statement.prepare(sql);
        statement.define_and_bind();
        statement.execute(true);
      });
}

std::vector<Database::Row> Database::select(const std::string& sql, std::size_t columns, const Values& values)
{
  std::vector<Row> rows;
  content->guarded(
      [&]
      {
        std::vector<std::string> texts(columns);
        std::vector<soci::indicator> indicators(columns, soci::i_ok);
        soci::statement statement(content->session);
        for (std::size_t i = 0; i < columns; ++i)
          statement.exchange(soci::into(texts[i], indicators[i]));
        for (const std::string& value : values)
          statement.exchange(soci::use(value));
        statement.alloc();
        statement.prepare(sql);
        statement.define_and_bind();
        statement.execute(false);
        while (statement.fetch())
        {
          Row& row = rows.emplace_back(columns);
          for (std::size_t i = 0; i < columns; ++i)
            if (indicators[i] == soci::i_ok)
              row[i] = texts[i];
        }
      });
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
