#include "HostTesting.h"

#include <sqlite3.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace hosttest
{
namespace
{
using Connection = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;

Connection opened(const std::filesystem::path& database)
{
  sqlite3* connection = nullptr;
  if (sqlite3_open_v2(database.c_str(), &connection, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK)
    throw std::runtime_error("cannot open " + database.string());
  return {connection, &sqlite3_close};
}
} // namespace

TemporaryFolder::TemporaryFolder()
{
  std::string name = (std::filesystem::temp_directory_path() / "host-test-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr)
    throw std::runtime_error("no temporary folder");
  folder = name;
}

TemporaryFolder::~TemporaryFolder()
{
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
}

std::filesystem::path TemporaryFolder::operator/(const std::string& name) const
{
  return folder / name;
}

const std::filesystem::path& TemporaryFolder::path() const
{
  return folder;
}

std::string request(const std::string& schema, const std::string& reason, const std::string& rest)
{
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"" + schema + "\"><ReasonForMessage>" + reason +
         "</ReasonForMessage>" + rest + "</Schema>";
}

std::string readRequest(const std::string& schema, const std::string& rest)
{
  return request(schema, "read_request", rest);
}

std::string updateRequest(const std::string& schema, const std::string& rest)
{
  return request(schema, "update_request", rest);
}

std::string readReply(const std::string& schema, const std::string& rest)
{
  return request(schema, "read_response", rest);
}

std::string updateReply(const std::string& schema)
{
  return request(schema, "update_response", "");
}

std::string errorReply(const std::string& schema, const std::string& why)
{
  return request(schema, "error_response", "<Error>" + why + "</Error>");
}

std::string send(::DataAccessServiceIfc& das, const std::string& request)
{
  return das.sendRequest(request.c_str(), request.size());
}

std::string contentOf(const std::filesystem::path& file)
{
  std::ifstream input(file, std::ios::binary);
  if (!input)
    throw std::runtime_error("cannot read " + file.string());
  return {std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};
}

void writeFile(const std::filesystem::path& file, const std::string& content)
{
  std::ofstream output(file, std::ios::binary | std::ios::trunc);
  output << content;
  if (!output.flush())
    throw std::runtime_error("cannot write " + file.string());
}

std::vector<std::string> linesOf(const std::filesystem::path& file)
{
  std::ifstream input(file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(input, line);)
    lines.push_back(line);
  return lines;
}

bool holds(const std::string& text, const std::string& part)
{
  return text.find(part) != std::string::npos;
}

void runSql(const std::filesystem::path& database, const std::string& statements)
{
  const Connection connection = opened(database);
  if (sqlite3_exec(connection.get(), statements.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
    throw std::runtime_error(sqlite3_errmsg(connection.get()));
}

std::string queryText(const std::filesystem::path& database, const std::string& query)
{
  const Connection connection = opened(database);
  sqlite3_stmt* raw = nullptr;
  if (sqlite3_prepare_v2(connection.get(), query.c_str(), -1, &raw, nullptr) != SQLITE_OK)
    throw std::runtime_error(sqlite3_errmsg(connection.get()));
  const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement(raw, &sqlite3_finalize);
  if (sqlite3_step(raw) != SQLITE_ROW || sqlite3_column_type(raw, 0) == SQLITE_NULL)
    return "";
  return {reinterpret_cast<const char*>(sqlite3_column_text(raw, 0)),
          static_cast<std::size_t>(sqlite3_column_bytes(raw, 0))};
}
} // namespace hosttest
