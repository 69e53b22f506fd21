// The driver tells SQLite's number for an error, which says what can be done about it.
#include "SqliteDialect.h"

#include <soci/soci.h>
#include <soci/sqlite3/soci-sqlite3.h>

#include <cerrno>

#include "Everlasting.h"
#include "host/Error.h"

namespace host
{
const soci::backend_factory& SqliteDialect::driver() const
{
  return soci::sqlite3;
}

namespace
{
/// A full disk is told as such only where it is met while writing.
Dialect::Trouble troubleOfSystem(int reason)
{
  switch (reason)
  {
  case ENOSPC:
  case EDQUOT:
    return Dialect::Trouble::diskFull;
  case EROFS:
  case EACCES:
  case EPERM:
    return Dialect::Trouble::notWritable;
  default:
    return Dialect::Trouble::diskFailed;
  }
}
} // namespace

Dialect::Trouble SqliteDialect::troubleOf(const soci::soci_error& error, int systemError) const
{
  const auto* own = dynamic_cast<const soci::sqlite3_soci_error*>(&error);
  switch (own == nullptr ? SQLITE_ERROR : own->result() & 0xFF)
  {
  case SQLITE_CORRUPT:
  case SQLITE_NOTADB:
  case SQLITE_FORMAT:
    return Trouble::damaged;
  case SQLITE_FULL:
    return Trouble::diskFull;
  case SQLITE_CANTOPEN:
  case SQLITE_IOERR:
    return troubleOfSystem(systemError);
  case SQLITE_READONLY:
  case SQLITE_PERM:
    return Trouble::notWritable;
  case SQLITE_BUSY:
    return Trouble::busy;
  default:
    // Has no number of its own.
    return error.get_error_message().find("no transaction is active") == std::string::npos ? Trouble::other
                                                                                           : Trouble::noTransaction;
  }
}

std::string SqliteDialect::reasonOf(const soci::soci_error& error) const
{
  // The driver puts the name of its own operation in front.
  const std::string message = error.get_error_message();
  const std::size_t end = message.rfind("sqlite3_", 0) == 0 ? message.find(": ") : std::string::npos;
  return end == std::string::npos ? message : message.substr(end + 2);
}

std::string SqliteDialect::beginningToWrite() const
{
  return "BEGIN IMMEDIATE";
}

std::string SqliteDialect::rowNumberType() const
{
  return "INTEGER PRIMARY KEY";
}

std::string SqliteDialect::namesInUse() const
{
  return "SELECT lower(name) FROM sqlite_master";
}

std::string SqliteDialect::quoted(const std::string& name) const
{
  // Not in double quotes: a name in those that SQLite does not know it takes for a text. Qualifying the name would help
  // as well, but preparing a statement takes a third longer then.
  std::string text = "`";
  for (const char character : name)
    text.append(character == '`' ? 2 : 1, character);
  return text + '`';
}

bool SqliteDialect::isReserved(const std::string& name) const
{
  return name.rfind("sqlite_", 0) == 0;
}

std::string SqliteDialect::connectionText(const std::filesystem::path& file)
{
  // The driver takes a text without "=" as the file's name and any other as options, where a name in quotes may hold
  // anything but quotes.
  std::string name = file.string();
  if (name.find('=') == std::string::npos)
    return name;
  if (name.find('"') != std::string::npos)
    throw Error(name + ": the name of a database cannot hold both \"=\" and a quote");
  return "db=\"" + name + "\"";
}

const SqliteDialect& sqliteDialect()
{
  static const Everlasting<SqliteDialect> dialect;
  return *dialect;
}
} // namespace host
