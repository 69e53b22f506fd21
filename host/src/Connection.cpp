// All that is said to the driver is said here, and all its errors become ours here, without the bound values.
#include "Connection.h"

#include <soci/soci.h>

#include "Log.h"
#include "PreparedStatement.h"
#include "StatementCache.h"
#include "Trouble.h"

namespace host
{
namespace
{
/// The error as one that says what can be done about it.
[[noreturn]] void throwOurs(const std::string& text, Dialect::Trouble trouble)
{
  switch (trouble)
  {
  case Dialect::Trouble::damaged:
    throw DamagedFile(text);
  case Dialect::Trouble::diskFull:
    throw DiskTrouble(text + "; make room on its disk");
  case Dialect::Trouble::diskFailed:
    throw DiskTrouble(text + "; look whether its disk is full or broken, and make it and its folder writable");
  case Dialect::Trouble::notWritable:
    throw DiskTrouble(text + "; make it and its folder writable");
  case Dialect::Trouble::busy:
    throw BusyDatabase(text);
  case Dialect::Trouble::lost:
    throw LostConnection(text);
  case Dialect::Trouble::noTransaction:
    throw NoTransaction(text);
  case Dialect::Trouble::other:
    break;
  }
  throw Error(text);
}

/// The same requests come again and again, for each schema its own.
constexpr std::size_t statementsToKeep = 1024;
constexpr std::size_t bytesToKeep = 8UL * 1024 * 1024;
/// Values may be large: a statement that carried more is not kept with them.
constexpr std::size_t longestToKeep = 16384;

/// About what a prepared statement takes, as measured on tables of 1 to 200 columns; the drivers do not tell.
std::size_t sizeOf(const std::string& sql, std::size_t columns, std::size_t values)
{
  return 1024 + 5 * sql.size() + 512 * (columns + values);
}

std::size_t lengthOf(const Connection::Values& values)
{
  std::size_t length = 0;
  for (const std::string& value : values)
    length += value.size();
  return length;
}

std::size_t lengthOf(const Connection::Row& row)
{
  std::size_t length = 0;
  for (const auto& cell : row)
    length += cell ? cell->size() : 0;
  return length;
}
} // namespace

struct Connection::Content
{
  Content(const std::string& itsName, const Dialect& itsDialect) : name(itsName), dialect(itsDialect)
  {
  }

  PreparedStatement& prepared(const std::string& sql, std::size_t columns, std::size_t values)
  {
    if (PreparedStatement* known = statements.find(sql))
      return *known;
    return statements.add(sql, sizeOf(sql, columns, values), session, sql, columns, values);
  }

  std::string name;
  const Dialect& dialect;
  soci::session session;
  StatementCache<PreparedStatement> statements{statementsToKeep, bytesToKeep};
};

Connection::Connection(const std::string& name, const Dialect& dialect)
    : content(std::make_unique<Content>(name, dialect))
{
}

Connection::~Connection() = default;

const Dialect& Connection::dialect() const
{
  return content->dialect;
}

/// Runs `action`, turning the driver's errors into ours. Its full text shows bound values, the message alone does not.
template <typename Action>
void Connection::guarded(Action action)
{
  try
  {
    action();
  }
  catch (const soci::soci_error& error)
  {
    const bool lost = error.get_error_category() == soci::soci_error::connection_error;
    throwOurs(content->name + ": " + dialect().reasonOf(error),
              lost ? Dialect::Trouble::lost : dialect().troubleOf(error, systemError()));
  }
}

void Connection::open(const std::string& text)
{
  guarded([&] { content->session.open(content->dialect.driver(), text); });
}

void Connection::close()
{
  content->statements.clear();
  content->session.close();
}

std::size_t Connection::execute(const std::string& sql, Values values)
{
  beforeChange();
  return run(sql, 0, values, nullptr);
}

void Connection::executeOnce(const std::string& sql)
{
  execute(sql);
  content->statements.drop(sql);
}

void Connection::select(const std::string& sql, std::size_t columns, Values values, const RowReader& reader)
{
  run(sql, columns, values, reader);
}

std::vector<Connection::Row> Connection::select(const std::string& sql, std::size_t columns, Values values)
{
  std::vector<Row> rows;
  run(sql, columns, values, [&rows](const Row& row) { rows.push_back(row); });
  return rows;
}

/// Returns how many rows it changed, when it is no query.
std::size_t Connection::run(const std::string& sql, std::size_t columns, Values& values, const RowReader& reader)
{
  std::size_t length = lengthOf(values);
  std::size_t changed = 0;
  const auto runAndRead = [&]
  {
    PreparedStatement& statement = content->prepared(sql, columns, values.size());
    changed = statement.run(values);
    while (const Row* row = columns == 0 ? nullptr : statement.fetch())
    {
      length += lengthOf(*row);
      reader(*row);
    }
  };
  try
  {
    guarded(runAndRead);
  }
  catch (...)
  {
    // Nothing of a statement that failed is to be left open.
    content->statements.drop(sql);
    throw;
  }
  if (length > longestToKeep)
    content->statements.drop(sql);
  return changed;
}

void Connection::rollBack()
{
  try
  {
    Values none;
    run("ROLLBACK", 0, none, nullptr);
  }
  catch (const NoTransaction&)
  {
    // Some errors make the database roll back by itself; nothing is left to undo then.
  }
  catch (const std::exception& error)
  {
    SDM_HOST_LOG(2, "rollback failed: %s", error.what());
  }
}

Connection::Transaction::Transaction(Connection& itsConnection) : connection(itsConnection)
{
  connection.execute(connection.dialect().beginningToWrite());
}

Connection::Transaction::~Transaction()
{
  if (open)
    connection.rollBack();
}

void Connection::Transaction::commit()
{
  connection.execute("COMMIT");
  open = false;
}
} // namespace host
