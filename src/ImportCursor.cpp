#include "ImportCursor.h"

#include <algorithm>
#include <iterator>

namespace sdm
{

void ImportCursor::start(const Items* schemaItems)
{
  items = schemaItems;
  known = 0;
  position = 0;
  if (items != nullptr)
    next = items->begin();
}

ManagedDataItem* ImportCursor::find(const char* column, const std::string& row)
{
  if (items == nullptr)
    return nullptr;
  auto entry = position < known ? following[position] : next;
  if (entry == items->end() || entry->first.item != column || entry->first.index != row)
    entry = search(column, row);
  const bool found = entry != items->end();
  if (found)
    next = std::next(entry);
  if (position < following.size())
  {
    following[position] = found ? next : entry;
    known = std::max(known, ++position);
  }
  return found ? entry->second : nullptr;
}

ImportCursor::Items::const_iterator ImportCursor::search(const char* column, const std::string& row)
{
  place.item = column;
  place.index = row;
  return items->find(place);
}

} // namespace sdm
