// The manager as its owning service and its management agent see it, and the records that cross between them.
//
// A service makes a manager, hands it its surroundings (`setup`), registers its callbacks by name
// (`addSetter`, `addGetter`) and starts it with the name of an item map (`initialise`). From then on the
// management agent sets, reads and notifies through `ManageableData` records.
//
// Texts are UTF-8 byte strings. Every operation runs to its end on the caller's thread, blocks it, and, where
// it says so, holds the manager's lock meanwhile; the lock is re-entrant, so a callback may call the manager
// again on the same thread, but must not wait for another thread that needs the manager. Operations report
// by result, reject reasons and log lines. The exceptions that leave them are those that callbacks and platform
// services threw, and the one that `importItemFromDAS` describes; they leave the manager ready for its next operation.
#pragma once

#include <memory>
#include <string>

#include "ServiceDataManagerExport.h"

class ManageableData;
class MgmtAgentIfc;
class SvcRTEContext;
class ValidatorIfc;

/// Applies a new value to the owning service.
class SDM_EXPORT ManagedItemSetter
{
public:
  virtual ~ManagedItemSetter() = default;

  /// `value` is any text, the empty one included. `indexValue` tells which row of an indexed item is meant
  /// and is empty for others. True accepts. On false, `error` may be filled with the reason for the
  /// requester. The texts of `RejectReasonsStrings` mean something where a reason begins with them, on true as well as
  /// on false. On entry `error` may hold a text. Called with the manager's lock held; it may throw.
  virtual bool setValue(const std::string& value, const std::string& indexValue, std::string& error) = 0;
};

/// Reads a value from the owning service.
class SDM_EXPORT ManagedItemGetter
{
public:
  virtual ~ManagedItemGetter() = default;

  /// The current value of the row that `indexValue` names (empty for an item without rows). Called with the
  /// manager's lock held; it may throw.
  virtual std::string getValue(const std::string& indexValue) = 0;
};

/// One configuration item, as its line of the item map describes it.
///
/// Made and owned by the manager; a pointer to one is valid until `clearAllManagedData` or the manager's
/// end. The flags are kept as texts: an item is encrypted exactly when `dasEncrypted` is "true", and a
/// non-empty `isGroupItem` names its validation group.
class SDM_EXPORT ManagedDataItem
{
public:
  virtual ~ManagedDataItem() = default;

  /// The name under which the management agent and the local management store know the item.
  std::string rootId;
  /// The database schema (table) that holds the value; empty for an item of the local management store.
  std::string dasSchema;
  /// The column of that schema.
  std::string dasItem;
  /// The schema's index (key) column; empty for a schema without rows.
  std::string dasIndexName;
  /// This item's value of the index column.
  std::string dasIndexValue;
  /// Borrowed from the manager's registry when the item was made; null when the name was not registered by
  /// then, for good.
  ManagedItemSetter* setter = nullptr;
  /// Reads the value from the service; null when its name was not registered by then, for good. Borrowed as `setter`
  /// is.
  ManagedItemGetter* getter = nullptr;
  /// What the setter gets at each start, and user data at a reset; the alternative default where that applies. The
  /// empty text is a default as well.
  std::string defaultValue;
  /// The name of the item's validation group; empty for none.
  std::string isGroupItem;
  /// "true" when the database holds the value encrypted; whatever else for plain text.
  std::string dasEncrypted;
};

/// Manages the configuration items of one service: everything between its callbacks and the device.
///
/// A service calls, in this order:
/// 1. makeServiceDataManager() makes a manager, which the service owns.
/// 2. `setup` hands over context, agent, name and validator; all have to outlive the manager's work.
/// 3. `addSetter` and `addGetter` register each callback under the name that the item map uses. Later is too late,
///    since items look their callbacks up once, when the map is loaded.
/// 4. `ready` tells the local management store who is there. It may come at any time behind `setup`; called before
///    `initialise`, it lets the store know the service when the start subscribes its agent.
/// 5. `initialise` loads the map and brings the items to life: defaults, database, local store.
/// 6. From now on, in any order and from any thread: `setData` and `getData` for the management agent's requests,
///    `manageableDataChanged` for what the store reports, `setDefaultUserData` and `reloadUserData`. For a later start,
///    `setStartup(false)` and `initialise` again.
/// 7. When the service goes down: `deleteSetters` and `deleteGetters`, which nothing may follow but the manager's end.
class SDM_EXPORT ServiceDataManagerIfc
{
public:
  /// A getter and the name by which item maps refer to it. The name is a zero-terminated text that is copied
  /// on registration.
  struct Getter
  {
    /// Borrowed for the call. Null is refused, the empty text is a name.
    const char* name;
    /// The manager's own once it was taken; null for a name without a callback.
    ManagedItemGetter* getter;
  };

  /// A setter and the name by which item maps refer to it.
  struct Setter
  {
    /// Borrowed for the call. Null is refused, the empty text is a name.
    const char* name;
    /// The manager's own once it was taken; null for a name without a callback.
    ManagedItemSetter* setter;
  };

  /// Logs its end and frees items and indexes. Registered callbacks are not deleted: that is what
  /// `deleteGetters` and `deleteSetters` are for. No other thread may be inside the manager.
  virtual ~ServiceDataManagerIfc() = default;

  /// Hands over the manager's surroundings; all pointers are borrowed and may be null. Takes no lock: call it
  /// before anything else. Services that were found already stay when another context is handed over.
  virtual void setup(SvcRTEContext* context, MgmtAgentIfc* agent, const std::string& name, ValidatorIfc* validator) = 0;

  /// Starts with the item map of this name, as `initialiseWithoutSettingDefaultData` with an empty prefix.
  virtual void initialise(const std::string& name) = 0;

  /// The start-up sequence, under the lock. With the start-up flag set (a first start): loads the item map,
  /// pushes defaults through the setters, imports from the database, subscribes for observations and imports
  /// from the local management store. With the flag clear (a later start): keeps the loaded items, pushes
  /// defaults, imports from the database and publishes what changed.
  ///
  /// `name` is "CommsItemMap" for the file "CommsSettings.csv" in the working directory, or the name of a
  /// dictionary in the local management store; without the file, "CommsItemMap" names a dictionary as well.
  /// Root ids that begin with a non-empty `prefix` keep their current values. Failures are logged and the
  /// sequence goes on.
  virtual void initialiseWithoutSettingDefaultData(const std::string& name, const std::string& prefix) = 0;

  /// Registers the service with the local management store and tells whether the store accepted; false
  /// without a store. Every call registers again. Takes no lock, and may be the one to find the store: do not call
  /// it beside other operations.
  virtual bool ready() = 0;

  /// Applies the values of a request, under the lock: setters first, then the validation groups, then one
  /// update request per schema. Every refusal becomes a reject reason of `data`. True when nothing was refused but
  /// unchanged data and the database took the last schema's update, or none was needed; false, whatever was
  /// asked, without a Data Access Service.
  virtual bool setData(ManageableData& data) = 0;

  /// Answers each root id of a request with its current value, under the lock: from its getter, or from the
  /// database, or with its default when the database has none. True when at least one was answered; false,
  /// whatever was asked, without a Data Access Service.
  virtual bool getData(ManageableData& data) = 0;

  /// Applies values that changed in the local management store through the setters, under the lock. Root ids
  /// of database items are unknown here.
  virtual void manageableDataChanged(ManageableData& data) = 0;

  /// Registers a callback and takes ownership of it, under the lock, unless its name is taken: then the first
  /// one stays and the caller keeps what it passed. A null name is logged and refused, a null getter kept as
  /// a name without a callback. Register before `initialise`: items look their callbacks up once.
  virtual void addGetter(const Getter& getter) = 0;

  /// Registers a setter under its name and takes ownership of it, under the lock, as `addGetter` does with a getter:
  /// the first one of a name stays, a null name is refused, a null setter kept as a name without a callback.
  virtual void addSetter(const Setter& setter) = 0;

  /// The item of the local management store with this root id, or null. Takes the lock.
  virtual ManagedDataItem* getItem(const std::string& name) = 0;

  /// The item of the database with this root id, or null. Takes the lock.
  virtual ManagedDataItem* getPublishedItem(const std::string& name) = 0;

  /// Chooses between a first start (true, as after construction) and a later one. Takes no lock and may be
  /// called from any thread at any time.
  virtual void setStartup(bool startup) = 0;

  /// Frees the indexes and the items, under the lock. Callbacks and the list of user-data ids stay. Called
  /// from within a callback, it forgets them at once and frees them when the running operation ends.
  virtual void clearAllManagedData() = 0;

  /// Puts every user-data item whose value differs from its default back to it, in the database, in the
  /// service and in the local management store, under the lock. True when the store took the new values;
  /// false when there was nothing to reset, the store objected, or the store or the database is absent.
  virtual bool setDefaultUserData() = 0;

  /// Reads one item's value from the database as it stands there: neither decoded nor decrypted, and for an
  /// indexed item that of the first row. The value is what stands behind the first occurrence of the column's name
  /// in the reply, up to the next element. `value` becomes empty when nothing could be read. Takes the lock. When
  /// that first occurrence is the very end of the reply it throws `std::out_of_range`, with `value` as it was.
  virtual void importItemFromDAS(const std::string& rootId, std::string& value) = 0;

  /// Deletes the registered getters and forgets them, under the lock. Items keep their pointers, so nothing
  /// may read or set them afterwards: call it when the service goes down. Called from within a callback, it
  /// forgets them at once and deletes them when the running operation ends. One object may be registered under
  /// several names.
  virtual void deleteGetters() = 0;

  /// Deletes the registered setters and forgets them, under the lock. Items keep their pointers, so nothing may set or
  /// start them afterwards; the rest is as with `deleteGetters`.
  virtual void deleteSetters() = 0;

  /// Reads the user-data items from the database again and applies them as a set request would, under the
  /// lock. Refused groups are logged. Throws as `importItemFromDAS` does.
  virtual void reloadUserData() = 0;
};

/// Makes a manager, ready for `setup`. The caller owns it. Throws only for want of memory.
[[nodiscard]] SDM_EXPORT std::unique_ptr<ServiceDataManagerIfc> makeServiceDataManager();
