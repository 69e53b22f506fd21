#include "Items.h"

#include <algorithm>
#include <map>

namespace threads
{
namespace
{

/// In the order of a map file's columns.
std::vector<std::pair<std::string, std::string>> columnsOf(const Item& item)
{
  return {{"rootId", item.rootId},
          {"dasSchema", item.schema},
          {"dasItem", item.column},
          {"dasIndexName", item.row.empty() ? "" : "Id"},
          {"dasIndexValue", item.row},
          {"default", "default"},
          {"setter", "set " + item.rootId},
          {"getter", item.hasGetter ? "get " + item.rootId : ""},
          {"userData", item.userData ? "user" : ""},
          {"isGroupItem", item.group},
          {"alternative", ""},
          {"dasEncrypted", item.encrypted ? "true" : ""}};
}

std::map<std::string, std::string> makeDictionary()
{
  std::map<std::string, std::string> entries;
  int number = 1;
  for (const Item& item : items())
  {
    for (const auto& [key, text] : columnsOf(item))
      entries["/item[" + std::to_string(number) + "]/" + key] = text;
    ++number;
  }
  return entries;
}

} // namespace

const std::vector<Item>& items()
{
  static const std::vector<Item> all = {{"direct.a", "Direct", "ColA", ""},
                                        {"direct.b", "Direct", "ColB", ""},
                                        {"direct.c", "TransportSettings", "ColC", ""},
                                        {"stored.d", "Direct", "ColD", "", false},
                                        {"pair.left", "Pair", "ColLeft", ""},
                                        {"pair.right", "Pair", "ColRight", ""},
                                        {"secret.e", "SipBaseSettings", "ColE", "", false, false, "", true},
                                        {"row.1", "Rows", "ColF", "1"},
                                        {"row.2", "Rows", "ColF", "2"},
                                        {"group.x", "Group", "ColX", "", true, false, "Trio"},
                                        {"group.y", "Group", "ColY", "", true, false, "Trio"},
                                        {"group.z", "Group", "ColZ", "", true, false, "Trio"},
                                        {"user.g", "User", "ColG", "", true, true},
                                        {"user.h", "User", "ColH", "", true, true},
                                        {"local.i", "", "", ""},
                                        {"local.j", "", "", ""},
                                        {renewal, "Control", "ColRenew", ""}};
  return all;
}

const Item* findItem(const std::string& rootId)
{
  const auto found =
      std::find_if(items().begin(), items().end(), [&](const Item& item) { return item.rootId == rootId; });
  return found == items().end() ? nullptr : &*found;
}

const Item* findCell(const std::string& schema, const std::string& column, const std::string& row)
{
  const auto found =
      std::find_if(items().begin(), items().end(),
                   [&](const Item& item) { return item.schema == schema && item.column == column && item.row == row; });
  return found == items().end() ? nullptr : &*found;
}

std::string itemMapFile()
{
  std::string text;
  for (const Item& item : items())
  {
    std::string line;
    for (const auto& [key, column] : columnsOf(item))
      line += (line.empty() ? "" : ",") + column;
    text += line + "\n";
  }
  return text;
}

std::string dictionaryEntry(const std::string& key)
{
  static const std::map<std::string, std::string> entries = makeDictionary();
  const auto found = entries.find(key);
  return found == entries.end() ? "" : found->second;
}

} // namespace threads
