// An item is a secret when its map encrypts it, was meant to encrypt it, or when the platform masks its name.
#include "Side.h"

#include <algorithm>
#include <functional>

#include "host/Secrets.h"

namespace cli::diff
{

namespace
{

/// "True", or a carriage return behind "true", turns encryption off; the value is a secret all the same.
bool isMeantEncrypted(const ItemText& item)
{
  const std::string_view flag = item[Column::dasEncrypted];
  const auto same = [](char a, char b)
  { return (static_cast<unsigned char>(a) | 0x20U) == static_cast<unsigned char>(b); };
  constexpr std::string_view yes = "true";
  return std::search(flag.begin(), flag.end(), yes.begin(), yes.end(), same) != flag.end();
}

} // namespace

Cell cellOf(const ItemText& item)
{
  return {item[Column::dasSchema], item[Column::dasItem], item[Column::dasIndexValue]};
}

std::size_t CellHash::operator()(const Cell& cell) const
{
  const std::hash<std::string_view> hash;
  // Odd factors, so that swapped names do not meet.
  return hash(std::get<0>(cell)) + 31 * hash(std::get<1>(cell)) + 1009 * hash(std::get<2>(cell));
}

bool hasCell(const ItemText& item)
{
  return !item.isLocal() && item.has(Column::dasItem);
}

Side::Side(const MapText& map)
{
  all.reserve(map.lines().size());
  for (const MapLine& line : map.lines())
  {
    if (line.kind == MapLine::Kind::item)
      all.emplace_back(map, line);
  }
  for (const ItemText& item : all)
    add(item);
}

void Side::add(const ItemText& item)
{
  const std::string_view rootId = item[Column::rootId];
  if (!rootId.empty())
    (item.isLocal() ? inLocalStore : inDatabase)[rootId] = &item;
  if (item.isUserData())
    userData.insert(rootId);
  if (isMeantEncrypted(item))
    encrypted.insert(rootId);
  if (hasCell(item))
  {
    const ItemText*& reader = cells[cellOf(item)];
    if (reader == nullptr || item.has(Column::setter) || !reader->has(Column::setter))
      reader = &item;
  }
  if (!item.isLocal() && item.has(Column::setter))
    asked[item[Column::dasSchema]] = {item[Column::dasIndexName], &item};
}

bool Side::isSecret(const ItemText& item) const
{
  const auto looksSecret = [&](Column column) { return host::isSecret(std::string(item[column])); };
  return encrypted.count(item[Column::rootId]) != 0 || looksSecret(Column::rootId) || looksSecret(Column::dasSchema) ||
         looksSecret(Column::dasItem);
}

const ItemText* Side::find(std::string_view rootId, bool inStore) const
{
  const ByRootId& items = inStore ? inLocalStore : inDatabase;
  const auto found = items.find(rootId);
  return found == items.end() ? nullptr : found->second;
}

} // namespace cli::diff
