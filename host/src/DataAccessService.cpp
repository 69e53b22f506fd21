// Requests one after the other, under one lock. Whatever fails becomes a reply; the log has the whole reason.
#include "host/DataAccessService.h"

#include <mutex>

#include "DasCatalog.h"
#include "DasQueries.h"
#include "DasReply.h"
#include "DasRequest.h"
#include "Database.h"
#include "Log.h"
#include "Refusal.h"
#include "SqliteDialect.h"
#include "Trouble.h"

namespace host
{
namespace
{
/// "das" in ASCII and a layout number: tells this file from other databases.
constexpr int databaseKind = 0x64617301;
} // namespace

struct DataAccessService::Content
{
  Content(const std::filesystem::path& itsFile, Storage storage, const std::string& whyCopied, Disk* disk)
      : file(itsFile),
        database(std::make_unique<Database>(file, databaseKind, DasCatalog::layout(sqliteDialect()), storage, whyCopied,
                                            disk))
  {
    catalog.load(*database);
  }

  void provision(const std::vector<SchemaDefinition>& schemas)
  {
    DasCatalog extended = catalog;
    Database::Transaction transaction(*database);
    for (const SchemaDefinition& schema : schemas)
      extended.provision(*database, schema);
    transaction.commit();
    catalog = std::move(extended);
  }

  /// A copy can be provisioned, as it is read by the same rules as the file.
  void provisionCopy(const std::vector<SchemaDefinition>& schemas)
  {
    database->allowChangesOfCopy(true);
    provision(schemas);
    database->allowChangesOfCopy(false);
  }

  void goOnWithCopy(const std::string& why)
  {
    trouble = why;
    copied = true;
    database = std::make_unique<Database>(file, databaseKind, DasCatalog::layout(sqliteDialect()), Storage::copy, why);
    catalog = {};
    catalog.load(*database);
  }

  std::string answer(DasRequest& request)
  {
    const std::lock_guard<std::mutex> lock(mutex);
    const DasTable* table = catalog.find(request.schema);
    if (table == nullptr)
      throw Refusal("there is no schema '" + request.schema + "'");
    return request.kind == DasRequest::Kind::read ? readTable(*database, *table, request)
                                                  : updateTable(*database, *table, request);
  }

  const std::filesystem::path file;
  std::mutex mutex;
  std::unique_ptr<Database> database;
  DasCatalog catalog;
  bool copied = false;
  /// Why it came to a copy.
  std::string trouble;
};

DataAccessService::DataAccessService(const std::filesystem::path& database, Storage storage,
                                     const std::string& whyCopied, Disk* disk)
    : content(std::make_unique<Content>(database, storage, whyCopied, disk))
{
  content->copied = storage == Storage::copy;
}

DataAccessService::~DataAccessService() = default;

void DataAccessService::provision(const std::vector<SchemaDefinition>& schemas)
{
  const std::lock_guard<std::mutex> lock(content->mutex);
  if (content->copied)
    return content->provisionCopy(schemas);
  try
  {
    content->provision(schemas);
  }
  catch (const DiskTrouble& trouble)
  {
    content->goOnWithCopy(trouble.what());
    content->provisionCopy(schemas);
  }
}

std::string DataAccessService::diskTrouble()
{
  const std::lock_guard<std::mutex> lock(content->mutex);
  return content->trouble;
}

std::vector<SchemaDefinition> DataAccessService::schemas()
{
  const std::lock_guard<std::mutex> lock(content->mutex);
  std::vector<SchemaDefinition> definitions;
  for (const DasTable& table : content->catalog.tables())
    definitions.push_back(definitionOf(*content->database, table));
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
    SDM_HOST_LOG(2, "DAS request for schema \"%s\" failed: %s", asked.schema.c_str(), error.what());
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
  return table == nullptr ? std::nullopt : readCell(*content->database, *table, column, {indexColumn, indexValue});
}
} // namespace host
