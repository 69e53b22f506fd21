// The records that an operation makes of a request and of the groups in it. Comes with ServiceDataManager.h.
#pragma once

#include <string>

#include "ServiceDataManager.h"

struct ServiceDataManager::SetDataBlob
{
  SetDataBlob(std::string requestedRootId, std::string requestedValue, ManagedDataItem* publishedItem);
  virtual ~SetDataBlob();
  SetDataBlob(const SetDataBlob&);
  SetDataBlob(SetDataBlob&&) noexcept;
  SetDataBlob& operator=(const SetDataBlob&);
  SetDataBlob& operator=(SetDataBlob&&) noexcept;

  std::string rootId;
  std::string value;
  /// The setter accepted the value.
  bool validated = false;
  /// The setter's refusal or remark.
  std::string reason;
  /// Null when no item is published under the root id; not owned.
  ManagedDataItem* item;
};

struct ServiceDataManager::GroupDataBlob
{
  GroupDataBlob(std::string group, bool accepted, std::string refusal);
  virtual ~GroupDataBlob();
  GroupDataBlob(const GroupDataBlob&);
  GroupDataBlob(GroupDataBlob&&) noexcept;
  GroupDataBlob& operator=(const GroupDataBlob&);
  GroupDataBlob& operator=(GroupDataBlob&&) noexcept;

  std::string groupName;
  bool valid;
  /// Empty for a valid group.
  std::string reason;
};
