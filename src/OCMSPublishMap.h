// The index of what the database holds, as the management agent asks for it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ServiceDataManagerExport.h"

class ManagedDataItem;

/// The items that live in the database: those with a schema.
///
/// Built once over the manager's items, which it must not outlive and does not own. Of items with the same
/// root id the last one counts. No lock of its own.
class SDM_EXPORT OCMSPublishMap
{
public:
  /// Null entries are passed over. The vector is only read.
  explicit OCMSPublishMap(std::vector<ManagedDataItem*>& items);

  /// The item with exactly this root id, or null.
  ManagedDataItem* getItem(std::string key);

  /// The items in the order of their root ids.
  std::map<std::string, ManagedDataItem*>& getItemMap();

private:
  std::map<std::string, ManagedDataItem*> itemMap;
};
