#include "host/DataAccessServiceIfc.h"

#include <mutex>

#include "DasCatalog.h"
#include "DasQueries.h"
#include "DasReply.h"
#include "DasRequest.h"
#include "Database.h"
#include "Refusal.h"
#include "host/Error.h"
#include <logAppUni.h>

namespace host
{
namespace
{
/// "das" in ASCII and a layout number: tells this file from other databases.
constexpr int databaseKind = 0x64617301;
} // namespace

struct DataAccessService::Content
{
  explicit Content(const std::filesystem::path& file) : database(file, databaseKind, DasCatalog::layout())
  {
    catalog.load(database);
  }

  std::string answer(const DasRequest& request)
  {
    const std::lock_guard<std::mutex> lock(mutex);
    const DasTable* table = catalog.find(request.schema);
    if (table == nullptr)
      throw Refusal("there is no schema '" + request.schema + "'");
    return request.kind == DasRequest::Kind::read ? readTable(database, *table, request)
                                                  : updateTable(database, *table, request);
  }

  std::mutex mutex;
  Database database;
  DasCatalog catalog;
};

DataAccessService::DataAccessService(const std::filesystem::path& database)
    : content(std::make_unique<Content>(database))
{
}

DataAccessService::~DataAccessService() = default;

void DataAccessService::provision(const std::vector<SchemaDefinition>& schemas)
{
  const std::lock_guard<std::mutex> lock(content->mutex);
  DasCatalog extended = content->catalog;
  Database::Transaction transaction(content->database);
  for (const SchemaDefinition& schema : schemas)
    extended.provision(content->database, schema);
  transaction.commit();
  content->catalog = std::move(extended);
}

std::vector<SchemaDefinition> DataAccessService::schemas()
{
  const std::lock_guard<std::mutex> lock(content->mutex);
  std::vector<SchemaDefinition> definitions;
  for (const DasTable& table : content->catalog.tables())
    definitions.push_back(definitionOf(content->database, table));
  return definitions;
}

std::string DataAccessService::sendRequest(const char* request, std::size_t length)
{
  DasRequest asked;
  try
  {
    readDasRequest(request, length, asked);
    return content->answer(asked);
  }
  catch (const Refusal& refusal)
  {
    return dasErrorReply(asked.schema, refusal.what());
  }
  catch (const std::bad_alloc&)
  {
    throw;
  }
  catch (const std::exception& error)
  {
    logAppUni("HostPlatform", "host/src/DataAccessServiceIfc", 2, __LINE__, "DAS request for schema \"%s\" failed: %s",
              asked.schema.c_str(), error.what());
    // The database's words may name the column, and who reads one may look for its name in the reply.
    const bool reading = asked.kind == DasRequest::Kind::read;
    return dasErrorReply(asked.schema, reading ? "the database failed; the log says why" : error.what());
  }
}

std::optional<std::string> DataAccessService::storedCell(const std::string& schema, const std::string& column,
                                                         const std::string& indexColumn, const std::string& indexValue)
{
  const std::lock_guard<std::mutex> lock(content->mutex);
  const DasTable* table = content->catalog.find(schema);
  return table == nullptr ? std::nullopt : readCell(content->database, *table, column, {indexColumn, indexValue});
}
} // namespace host
