// The table of everything that can be set on the device: the one place to add a setting.
#pragma once

#include <string>
#include <vector>

#include "ValueRules.h"

namespace commsservice
{

/// One setting, as the service sees it. The item map says where its value is kept.
struct Setting
{
  /// What answers when a value arrives that the service has already.
  enum class Repeat
  {
    accepted, ///< taken again, with the remark `unchanged_data`
    refused   ///< refused as `not_changed`: taking it again would interrupt calls or a connection for nothing
  };

  /// The item map's callbacks are "set" and "get" before this name.
  std::string name;
  /// What the service works with until something else arrives, for every row.
  std::string initial;
  ValueRule rule;
  /// Rows are named "1" to this number; without rows (0) the row is the empty text.
  int rows = 0;
  Repeat repeat = Repeat::accepted;
  /// A secret has no getter: what has one is published in plain text and compared in the open.
  bool secret = false;
  /// Facts have no setter.
  bool readOnly = false;
  /// Kept on the device only; an empty value means that the store holds none and `initial` is to be used.
  bool localOnly = false;
  /// The validation group, and the root id by which the validator names this member of it.
  std::string group{};
  std::string rootId{};

  Setting inRows(int count) const;
  Setting restarts() const;
  Setting hidden() const;
  Setting fact() const;
  Setting local() const;
  Setting member(const std::string& ofGroup, const std::string& itsRootId) const;
};

/// Every setting of the device, in the order of the item map. Names are unique.
const std::vector<Setting>& settings();

} // namespace commsservice
