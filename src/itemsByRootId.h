// What the three indexes by root id have in common.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ServiceDataManagerIfc.h"

namespace sdm
{

/// The selected items by root id; an item without one can not be found and is left out. Maps mostly list their items in
/// order, so each is first tried behind the one before it.
template <typename Selected>
std::map<std::string, ManagedDataItem*> itemsByRootId(const std::vector<ManagedDataItem*>& items, Selected selected)
{
  std::map<std::string, ManagedDataItem*> byRootId;
  for (ManagedDataItem* item : items)
  {
    if (item != nullptr && !item->rootId.empty() && selected(*item))
      byRootId.insert_or_assign(byRootId.end(), item->rootId, item);
  }
  return byRootId;
}

inline ManagedDataItem* itemWithRootId(const std::map<std::string, ManagedDataItem*>& byRootId, const std::string& key)
{
  const auto found = byRootId.find(key);
  return found == byRootId.end() ? nullptr : found->second;
}

} // namespace sdm
