// What the tests of the host platform share.
#pragma once

#include <DataAccessServiceIfc.h>

#include <filesystem>
#include <string>
#include <vector>

#include "host/Error.h"

namespace hosttest
{
/// A folder of the test's own that goes away with it.
class TemporaryFolder
{
public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::filesystem::path operator/(const std::string& name) const;
  const std::filesystem::path& path() const;

private:
  std::filesystem::path folder;
};

/// The texts of messages. `rest` is XML and stands behind the reason.
std::string request(const std::string& schema, const std::string& reason, const std::string& rest);
std::string readRequest(const std::string& schema, const std::string& rest = "");
std::string updateRequest(const std::string& schema, const std::string& rest);
std::string readReply(const std::string& schema, const std::string& rest);
std::string updateReply(const std::string& schema);
std::string errorReply(const std::string& schema, const std::string& why);

std::string send(::DataAccessServiceIfc& das, const std::string& request);

std::string contentOf(const std::filesystem::path& file);
void writeFile(const std::filesystem::path& file, const std::string& content);
std::vector<std::string> linesOf(const std::filesystem::path& file);
bool holds(const std::string& text, const std::string& part);

/// Runs statements on a database behind its owner's back.
void runSql(const std::filesystem::path& database, const std::string& statements);
/// The first column of a query's only row.
std::string queryText(const std::filesystem::path& database, const std::string& query);

/// What of a `host::Error` the action throws; empty when it throws none.
template <typename Action>
std::string errorOf(Action action)
{
  try
  {
    action();
  }
  catch (const host::Error& error)
  {
    return error.what();
  }
  return "";
}
} // namespace hosttest
