// Reads the file through the library's own reader, so that both agree on every line.
#include "ItemTable.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "ItemMapFile.h"
#include "base/WholeFile.h"

namespace cli
{
namespace
{

using Column = sdm::ItemMapColumn;

MapItem itemOf(const sdm::ItemMapFile& file)
{
  MapItem item;
  item.rootId = file.column(Column::rootId);
  item.schema = file.column(Column::dasSchema);
  item.column = file.column(Column::dasItem);
  item.indexName = file.column(Column::dasIndexName);
  item.indexValue = file.column(Column::dasIndexValue);
  item.defaultValue = file.column(Column::defaultValue);
  item.alternativeDefault = file.column(Column::alternativeDefault);
  item.setter = file.column(Column::setter);
  item.getter = file.column(Column::getter);
  item.group = file.column(Column::isGroupItem);
  item.userData = *file.column(Column::userData) != '\0';
  item.encrypted = std::strcmp(file.column(Column::dasEncrypted), "true") == 0;
  return item;
}

[[noreturn]] void unreadable(const std::filesystem::path& path, const std::string& why)
{
  throw StartError("the item map " + path.string() + " cannot be read: " + why + "; name another one with --map");
}

} // namespace

std::string mapContent(const std::filesystem::path& path)
{
  try
  {
    return wholeFile(path);
  }
  catch (const Unusable& error)
  {
    unreadable(path, error.what());
  }
}

ItemTable::ItemTable(const std::filesystem::path& path)
{
  std::string content = mapContent(path);
  sdm::ItemMapFile file(::fmemopen(content.data(), content.size(), "r"));
  if (!file.isOpen())
    unreadable(path, std::strerror(errno));
  auto line = file.next();
  for (; line != sdm::ItemMapFile::Line::end; line = file.next())
  {
    if (line == sdm::ItemMapFile::Line::readError)
      unreadable(path, std::strerror(errno));
    if (line != sdm::ItemMapFile::Line::item)
      continue;
    all.push_back(itemOf(file));
    noteEncryption(file.column(Column::dasEncrypted), file.lineNumber());
  }
  if (all.empty())
    unreadable(path, "it holds no item, that is no line with twelve columns separated by commas");
  for (std::size_t i = 0; i < all.size(); ++i)
  {
    if (places.count(all[i].rootId) == 0)
      ids.push_back(all[i].rootId);
    places[all[i].rootId] = i;
  }
}

void ItemTable::noteEncryption(const std::string& column, unsigned long line)
{
  if (column.empty() || column == "true")
    return;
  if (unclear.lines++ == 0)
  {
    unclear.firstLine = line;
    unclear.carriageReturn = column.back() == '\r';
  }
}

const UnclearEncryption& ItemTable::unclearEncryption() const
{
  return unclear;
}

const std::vector<MapItem>& ItemTable::items() const
{
  return all;
}

const MapItem* ItemTable::find(const std::string& rootId) const
{
  const auto found = places.find(rootId);
  return found == places.end() ? nullptr : &all[found->second];
}

const std::vector<std::string>& ItemTable::rootIds() const
{
  return ids;
}

bool takesAlternative(const MapItem& item, std::uint32_t interfaces)
{
  return sdm::takesAlternativeDefaults(interfaces) && item.hasAlternative();
}

} // namespace cli
