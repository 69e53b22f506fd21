// The local management store over a SQLite file of its own.
#pragma once

#include <LocalMgmtIfc.h>

#include <filesystem>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/Disk.h"
#include "host/HostExport.h"
#include "host/Storage.h"

namespace host
{
/// Values, dictionaries and locks last in the file; subscriptions last as long as the store object. Every operation may
/// be called from any thread. What was changed is on the disk when the operation returns.
///
/// Reports to agents are made without any lock of the store, on the thread that made a change. They come one at a time
/// and in the order of the changes: while one is being made, the thread that makes it also makes those of changes that
/// come meanwhile, be they from other threads or from the agent itself, so that such a change returns before its
/// report. What an agent throws is logged and goes no further.
class SDM_HOST_EXPORT LocalMgmtStore : public ::LocalMgmtIfc
{
public:
  /// Opens the database or makes it. Throws `Error` naming the file and the reason. On a disk that takes no changes a
  /// copy can do: it is read, and refuses changes as a failing database does; `whyCopied` is logged then. `disk`
  /// (borrowed) is asked before each change of the file; null for nobody.
  explicit LocalMgmtStore(const std::filesystem::path& database, Storage storage = Storage::file,
                          const std::string& whyCopied = "", Disk* disk = nullptr);
  ~LocalMgmtStore() override;
  LocalMgmtStore(const LocalMgmtStore&) = delete;
  LocalMgmtStore& operator=(const LocalMgmtStore&) = delete;

  /// Accepts version 1 and refuses any other.
  bool registerService(const std::string& serviceName, MgmtAgentIfc* agent, int version) override;

  /// False, with a log line, when the dictionary does not exist or the database fails.
  bool lookupData(ManageableData& data) override;

  /// Always accepted. Null as agent subscribes nobody.
  bool subscribe(std::list<std::string>& rootIds, MgmtAgentIfc* agent) override;

  /// False, with a log line and nothing stored, when a root id has no value in the record or the database fails.
  /// Subscribers hear of those values that are new.
  bool publishData(ManageableData& data) override;

  /// Leaves the first of the record's root ids that is locked as its own root id, or an empty one when none is. When
  /// the database fails the first root id is named, since an item whose lock cannot be read must not change. Returns
  /// whether the record may be changed.
  bool checkData(ManageableData& data, void* context) override;

  /// A stored value; nullopt when there is none. Throws `Error` when the database fails, as all that follow do.
  std::optional<std::string> value(const std::string& rootId);

  /// Stores a value, then reports it to the subscribed agents, also when it equals the stored one.
  void change(const std::string& rootId, const std::string& value);

  /// Replaces a dictionary by these (key, value) entries, such as ("/item[1]/rootId", "x"); without entries it is an
  /// existing, empty one. Of a repeated key the last value stays.
  void defineDictionary(const std::string& name, const std::vector<std::pair<std::string, std::string>>& entries);

  /// Locks an item for `checkData` until it is unlocked, over restarts. Locking twice is no error.
  void lockItem(const std::string& rootId);

  /// Ends that. Unlocking what is not locked is no error.
  void unlockItem(const std::string& rootId);

  /// The locked root ids in byte order.
  std::vector<std::string> lockedItems();

  /// Ends all subscriptions of an agent that is about to go away. On return no report to it is under way or will be
  /// made, unless it is called from within such a report; so the caller must hold no lock that the agent needs.
  void forgetAgent(MgmtAgentIfc* agent);

private:
  struct Content;
  std::unique_ptr<Content> content;
};
} // namespace host
