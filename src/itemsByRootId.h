// What the three indexes by root id have in common.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ServiceDataManagerIfc.h"

namespace sdm
{

/// The selected items by root id; null entries and items without a root id, which can not be found, are left out. Of
/// items with the same root id the last one counts.
std::map<std::string, ManagedDataItem*> itemsByRootId(const std::vector<ManagedDataItem*>& items,
                                                      bool (*selected)(const ManagedDataItem& item));

/// Null when there is none.
ManagedDataItem* itemWithRootId(const std::map<std::string, ManagedDataItem*>& byRootId, const std::string& rootId);

} // namespace sdm
