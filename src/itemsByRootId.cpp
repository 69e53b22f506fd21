#include "itemsByRootId.h"

namespace sdm
{

std::map<std::string, ManagedDataItem*> itemsByRootId(const std::vector<ManagedDataItem*>& items,
                                                      bool (*selected)(const ManagedDataItem& item))
{
  std::map<std::string, ManagedDataItem*> byRootId;
  for (ManagedDataItem* item : items)
  {
    // Maps mostly list their items in order, so each is first tried behind the one before it.
    if (item != nullptr && !item->rootId.empty() && selected(*item))
      byRootId.insert_or_assign(byRootId.end(), item->rootId, item);
  }
  return byRootId;
}

ManagedDataItem* itemWithRootId(const std::map<std::string, ManagedDataItem*>& byRootId, const std::string& rootId)
{
  const auto found = byRootId.find(rootId);
  return found == byRootId.end() ? nullptr : found->second;
}

} // namespace sdm
