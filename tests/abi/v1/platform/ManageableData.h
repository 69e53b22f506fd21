// The record that travels between management agent, manager and local management store.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "PlatformExport.h"

class LocalMgmtIfc;

/// One management request: root ids, values under (root id, name) and the reasons why parts of it were
/// refused. Beside the list of root ids a record has one root id of its own, which names a dictionary to
/// look up or the item that a check objected to.
///
/// All texts are UTF-8 byte strings; any byte is kept. A record belongs to one operation on one thread and
/// has no lock. The store pointers are borrowed, may be null and need not be kept.
class SDM_PLATFORM_EXPORT ManageableData
{
public:
  ManageableData();
  ~ManageableData();
  ManageableData(const ManageableData&) = delete;
  ManageableData& operator=(const ManageableData&) = delete;

  /// Sets the record's own root id; empty takes it away.
  void setRootId(const std::string& rootId, LocalMgmtIfc* store);

  /// The record's own root id, empty when none was set.
  std::string getRootId() const;

  /// Adds a root id to the end of the list. A root id that is already there keeps its place and is kept
  /// once.
  void addRootId(const std::string& rootId, LocalMgmtIfc* store);

  /// Appends the root ids to `rootIds`, in the order they came in; what `rootIds` held stays.
  void getRootIds(std::vector<std::string>& rootIds);

  /// Reads the value under (root id, name) into `value`. Without one `value` becomes empty and the result is
  /// false.
  bool interogate(const std::string& rootId, const std::string& name, std::string& value);

  /// Writes the value under (root id, name), replacing an earlier one. When `name` is the root id itself the
  /// root id also joins the list, as by `addRootId`.
  void populate(const std::string& rootId, const std::string& name, const std::string& value);

  /// Appends a refusal. An item's refusal names its root id twice; a group's has an empty root id and the
  /// name "/".
  void addRejectReason(std::string rootId, std::string name, std::string reason);

  /// True while nothing was refused.
  bool isRejectListEmpty();

  /// True when every refusal carries exactly this reason; true as well when there is none.
  bool areAllRejectReasons(const std::string& reason);

private:
  /// The platform's own representation, and its services' way to it.
  struct Content;
  friend struct ManageableDataContent;
  std::unique_ptr<Content> content;
};
