// Values change and reports are added under one lock; agents are told when it was given back.
#include "host/LocalMgmtStore.h"

#include <ManageableData.h>

#include <mutex>

#include "Database.h"
#include "Deliveries.h"
#include "Log.h"

namespace host
{
namespace
{
/// "ocm" in ASCII and a layout number: tells this file from other databases.
constexpr int databaseKind = 0x6F636D01;

std::vector<std::string> layout()
{
  return {"CREATE TABLE item_values (root_id TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID",
          "CREATE TABLE dictionaries (name TEXT PRIMARY KEY) WITHOUT ROWID",
          "CREATE TABLE dictionary_entries (dictionary TEXT NOT NULL, key TEXT NOT NULL, value TEXT NOT NULL, "
          "PRIMARY KEY (dictionary, key)) WITHOUT ROWID",
          "CREATE TABLE locked_items (root_id TEXT PRIMARY KEY) WITHOUT ROWID"};
}

void logFailure(const char* operation, const std::exception& error)
{
  SDM_HOST_LOG(2, "%s failed: %s", operation, error.what());
}

std::vector<std::string> rootIdsOf(ManageableData& data)
{
  std::vector<std::string> rootIds;
  data.getRootIds(rootIds);
  return rootIds;
}
} // namespace

/// The operations that need the lock. Those that change values add the reports while they hold it, so that reports come
/// in the order of the changes.
struct LocalMgmtStore::Content
{
  Content(const std::filesystem::path& file, Storage storage, const std::string& whyCopied, Disk* disk)
      : database(file, databaseKind, layout(), storage, whyCopied, disk)
  {
  }

  std::optional<std::string> value(const std::string& rootId)
  {
    const auto rows = database.select("SELECT value FROM item_values WHERE root_id = :r", 1, {rootId});
    return rows.empty() ? std::nullopt : rows.front().front();
  }

  /// False when that is the value already.
  bool store(const std::string& rootId, const std::string& newValue)
  {
    return database.execute("INSERT INTO item_values (root_id, value) VALUES (:r, :v) "
                            "ON CONFLICT (root_id) DO UPDATE SET value = excluded.value "
                            "WHERE item_values.value <> excluded.value",
                            {rootId, newValue}) != 0;
  }

  bool isLocked(const std::string& rootId)
  {
    return !database.select("SELECT root_id FROM locked_items WHERE root_id = :r", 1, {rootId}).empty();
  }

  bool lookupDictionary(const std::string& name, ManageableData& data)
  {
    if (database.select("SELECT name FROM dictionaries WHERE name = :n", 1, {name}).empty())
    {
      SDM_HOST_LOG(2, "there is no dictionary \"%s\"", name.c_str());
      return false;
    }
    database.select("SELECT key, value FROM dictionary_entries WHERE dictionary = :d", 2, {name},
                    [&](const Database::Row& row) { data.populate(name, row[0].value(), row[1].value()); });
    return true;
  }

  void lookupValues(ManageableData& data)
  {
    for (const std::string& rootId : rootIdsOf(data))
      if (const std::optional<std::string> found = value(rootId))
        data.populate(rootId, rootId, *found);
  }

  bool publish(ManageableData& data)
  {
    Deliveries::Values changes;
    Database::Transaction transaction(database);
    for (const std::string& rootId : rootIdsOf(data))
    {
      std::string newValue;
      if (!data.interogate(rootId, rootId, newValue))
      {
        SDM_HOST_LOG(2, "publication of \"%s\" without a value", rootId.c_str());
        return false;
      }
      if (store(rootId, newValue))
        changes.emplace_back(rootId, newValue);
    }
    transaction.commit();
    deliveries.add(changes);
    return true;
  }

  std::mutex mutex;
  Database database;
  Deliveries deliveries;
};

LocalMgmtStore::LocalMgmtStore(const std::filesystem::path& database, Storage storage, const std::string& whyCopied,
                               Disk* disk)
    : content(std::make_unique<Content>(database, storage, whyCopied, disk))
{
}

LocalMgmtStore::~LocalMgmtStore() = default;

bool LocalMgmtStore::registerService(const std::string&, MgmtAgentIfc*, int version)
{
  // Nothing is asked of a registered service: agents hear of what they subscribed to.
  return version == 1;
}

bool LocalMgmtStore::lookupData(ManageableData& data)
{
  try
  {
    const std::lock_guard<std::mutex> lock(content->mutex);
    const std::string dictionary = data.getRootId();
    if (!dictionary.empty())
      return content->lookupDictionary(dictionary, data);
    content->lookupValues(data);
    return true;
  }
  catch (const std::exception& error)
  {
    logFailure("lookup", error);
    return false;
  }
}

bool LocalMgmtStore::subscribe(std::list<std::string>& rootIds, MgmtAgentIfc* agent)
{
  content->deliveries.subscribe(rootIds, agent);
  return true;
}

bool LocalMgmtStore::publishData(ManageableData& data)
{
  try
  {
    const std::lock_guard<std::mutex> lock(content->mutex);
    if (!content->publish(data))
      return false;
  }
  catch (const std::exception& error)
  {
    logFailure("publication", error);
    return false;
  }
  content->deliveries.deliver();
  return true;
}

bool LocalMgmtStore::checkData(ManageableData& data, void*)
{
  const std::vector<std::string> rootIds = rootIdsOf(data);
  std::string objection;
  try
  {
    const std::lock_guard<std::mutex> lock(content->mutex);
    for (auto rootId = rootIds.begin(); rootId != rootIds.end() && objection.empty(); ++rootId)
      if (content->isLocked(*rootId))
        objection = *rootId;
  }
  catch (const std::exception& error)
  {
    logFailure("check for locks", error);
    objection = rootIds.front();
  }
  data.setRootId(objection, this);
  return objection.empty();
}

std::optional<std::string> LocalMgmtStore::value(const std::string& rootId)
{
  const std::lock_guard<std::mutex> lock(content->mutex);
  return content->value(rootId);
}

void LocalMgmtStore::change(const std::string& rootId, const std::string& value)
{
  {
    const std::lock_guard<std::mutex> lock(content->mutex);
    content->store(rootId, value);
    content->deliveries.add({{rootId, value}});
  }
  content->deliveries.deliver();
}

void LocalMgmtStore::defineDictionary(const std::string& name,
                                      const std::vector<std::pair<std::string, std::string>>& entries)
{
  const std::lock_guard<std::mutex> lock(content->mutex);
  Database& database = content->database;
  Database::Transaction transaction(database);
  database.execute("INSERT INTO dictionaries (name) VALUES (:n) ON CONFLICT DO NOTHING", {name});
  database.execute("DELETE FROM dictionary_entries WHERE dictionary = :d", {name});
  for (const auto& [key, value] : entries)
    database.execute("INSERT INTO dictionary_entries (dictionary, key, value) VALUES (:d, :k, :v) "
                     "ON CONFLICT (dictionary, key) DO UPDATE SET value = excluded.value",
                     {name, key, value});
  transaction.commit();
}

void LocalMgmtStore::lockItem(const std::string& rootId)
{
  const std::lock_guard<std::mutex> lock(content->mutex);
  content->database.execute("INSERT INTO locked_items (root_id) VALUES (:r) ON CONFLICT DO NOTHING", {rootId});
}

void LocalMgmtStore::unlockItem(const std::string& rootId)
{
  const std::lock_guard<std::mutex> lock(content->mutex);
  content->database.execute("DELETE FROM locked_items WHERE root_id = :r", {rootId});
}

std::vector<std::string> LocalMgmtStore::lockedItems()
{
  const std::lock_guard<std::mutex> lock(content->mutex);
  std::vector<std::string> rootIds;
  for (const Database::Row& row : content->database.select("SELECT root_id FROM locked_items ORDER BY root_id", 1))
    rootIds.push_back(row.at(0).value_or(""));
  return rootIds;
}

void LocalMgmtStore::forgetAgent(MgmtAgentIfc* agent)
{
  content->deliveries.forget(agent);
}
} // namespace host
