// The floor of a durable set: the same update by one prepared transaction, and the reading of one reply.
#include <stdexcept>
#include <utility>

#include <expat.h>
#include <sqlite3.h>

#include "DasOperations.h"
#include "Scenarios.h"

namespace bench
{

namespace
{

void require(bool done, sqlite3* database)
{
  if (!done)
    throw std::runtime_error(sqlite3_errmsg(database));
}

/// As durable as the host platform's database: a commit returns when it is on the disk.
class Table
{
public:
  explicit Table(std::size_t columnCount)
  {
    std::remove("floor.db");
    std::remove("floor.db-wal");
    require(sqlite3_open("floor.db", &database) == SQLITE_OK, database);
    // As many columns as the measured update's table has, each with a value: a row is written as a whole.
    std::string columns;
    std::string values;
    for (std::size_t i = 0; i < columnCount; ++i)
    {
      columns += ", Setting" + std::to_string(i) + " TEXT";
      values += std::string(", '") + liveValue + "'";
    }
    for (const std::string& sql : {std::string("PRAGMA journal_mode = WAL"), std::string("PRAGMA synchronous = FULL"),
                                   "CREATE TABLE settings (number INTEGER PRIMARY KEY" + columns + ")",
                                   "INSERT INTO settings VALUES (1" + values + ")"})
      require(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK, database);
    begin = prepare("BEGIN IMMEDIATE");
    update = prepare("UPDATE settings SET Setting1 = ? WHERE number = 1");
    commit = prepare("COMMIT");
  }

  ~Table()
  {
    for (sqlite3_stmt* statement : {begin, update, commit})
      sqlite3_finalize(statement);
    sqlite3_close(database);
  }

  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;

  void set(const char* value)
  {
    step(begin);
    sqlite3_bind_text(update, 1, value, -1, SQLITE_TRANSIENT);
    step(update);
    step(commit);
  }

private:
  sqlite3_stmt* prepare(const char* sql)
  {
    sqlite3_stmt* statement = nullptr;
    require(sqlite3_prepare_v2(database, sql, -1, &statement, nullptr) == SQLITE_OK, database);
    return statement;
  }

  void step(sqlite3_stmt* statement)
  {
    require(sqlite3_step(statement) == SQLITE_DONE, database);
    sqlite3_reset(statement);
  }

  sqlite3* database = nullptr;
  sqlite3_stmt* begin = nullptr;
  sqlite3_stmt* update = nullptr;
  sqlite3_stmt* commit = nullptr;
};

void parse(const std::string& reply)
{
  const XML_Parser parser = XML_ParserCreate(nullptr);
  XML_SetElementHandler(
      parser, [](void*, const char*, const char**) {}, [](void*, const char*) {});
  XML_Parse(parser, reply.data(), static_cast<int>(reply.size()), 1);
  XML_ParserFree(parser);
}

/// With `reply`, that text is parsed as well, as the manager does.
Run set(std::size_t columnCount, const std::string& reply)
{
  const auto table = std::make_shared<Table>(columnCount);
  return {nullptr,
          [table, reply, value = newValue, next = nextValue]() mutable
          {
            std::swap(value, next);
            table->set(value);
            if (!reply.empty())
              parse(reply);
          },
          1};
}

Run setWithReply(const Shape& shape)
{
  return set(Workload(shape).schemas.front().columns.size(),
             "<Schema name=\"NetworkSettings000000\"><ReasonForMessage>update_response</ReasonForMessage></Schema>");
}

} // namespace

std::vector<Scenario> platformFloors()
{
  std::vector<Scenario> all = dasOperations();
  all.push_back({"sqlite/set/1in1", {12000, 200}, false, setWithReply});
  all.push_back({"sqlite/set/1of10", {}, false, [](const Shape&) { return set(10, ""); }});
  return all;
}

} // namespace bench
