// How a service starts: the item map, the defaults, the database, the local management store, the publication.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>

#include "Model.h"

namespace judge
{

void Model::initialise(const std::string& name)
{
  initialiseWithoutSettingDefaultData(name, "");
}

void Model::initialiseWithoutSettingDefaultData(const std::string& name, const std::string& prefix)
{
  const Run run(*this);
  if (startup)
    loadMap(name);
  pushDefaults(prefix);
  importAllFromDas();
  if (startup)
  {
    subscribe();
    importFromStore();
  }
  if (!startup)
    publish();
}

/// A map that was read in part, because a service threw, is no map. What then goes is decided by the number of items,
/// also where a callback loaded or cleared items meanwhile: a decision of the project.
void Model::loadMap(const std::string& name)
{
  const std::size_t itemsBefore = items.size();
  const std::vector<std::string> idsBefore = userDataIds;
  try
  {
    readMap(name);
  }
  catch (...)
  {
    userDataIds = idsBefore;
    if (items.size() > itemsBefore)
    {
      goneItems.insert(goneItems.end(), items.begin() + static_cast<std::ptrdiff_t>(itemsBefore), items.end());
      items.resize(itemsBefore);
      buildIndexes();
    }
    throw;
  }
  buildIndexes();
}

void Model::readMap(const std::string& name)
{
  trace(5, "setAllManagedData %s", name.c_str());
  userDataIds.clear();
  std::ifstream file("CommsSettings.csv", std::ios::binary);
  if (name == "CommsItemMap" && file)
    readFile(file);
  else
    readDictionary(name);
}

namespace
{

struct Line
{
  /// Known to be too high behind a long line with a NUL byte in it.
  int number;
  bool tooLong;
  std::string text;
};

/// The file's lines as a reader with room for 500 characters and the line end sees them: a longer one in pieces. Each
/// with the number of its line in the file.
std::vector<Line> linesOf(std::istream& file)
{
  const std::string whole((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  std::vector<Line> lines;
  int number = 0;
  bool continued = false;
  bool tooLong = false;
  for (std::size_t at = 0; at < whole.size();)
  {
    const std::size_t end = std::min(whole.find('\n', at), whole.size() - 1) + 1;
    const std::string piece = whole.substr(at, std::min<std::size_t>(end - at, 500));
    const std::string seen = piece.substr(0, piece.find('\0'));
    at += piece.size();
    const bool first = !continued;
    continued = seen.size() == 500 && seen.back() != '\n';
    if (first)
    {
      ++number;
      tooLong = continued && at < whole.size() && whole[at] != '\n';
    }
    lines.push_back({number, tooLong, seen});
  }
  return lines;
}

std::vector<std::string> columnsOf(const std::string& line)
{
  std::vector<std::string> columns(1);
  for (const char c : line)
  {
    if (c == ',')
      columns.emplace_back();
    else
      columns.back() += c;
  }
  return columns;
}

} // namespace

void Model::readFile(std::istream& file)
{
  PhysicalInterfaceServiceIfc* const interfaces = service(interfacesFound, "PhysicalInterfaceServiceIfc");
  const uint32_t count = interfaces == nullptr ? 0 : interfaces->getInterfaceCount();
  int toldTooLong = 0;
  for (auto& [number, tooLong, line] : linesOf(file))
  {
    if (!line.empty() && line.back() == '\n')
      line.pop_back();
    if (line.size() <= 9)
      continue;
    const std::vector<std::string> c = columnsOf(line);
    if (c.size() < 12)
    {
      // Skipped, and told: a decision of the project, as is a unit without the service that counts its interfaces.
      if (!tooLong)
        say(2, "setAllManagedData line %d of \"CommsSettings.csv\" has fewer than 12 columns", number);
      else if (toldTooLong != number)
        say(2, "setAllManagedData line %d of \"CommsSettings.csv\" is longer than 500 characters", number);
      toldTooLong = tooLong ? number : toldTooLong;
      continue;
    }
    if (!c[8].empty())
      userDataIds.push_back(c[0]);
    const bool alternative = count >= 2 && count <= 4 && !c[10].empty();
    addItem({c[0], c[1], c[2], c[3], c[4], alternative ? c[10] : c[5], c[6], c[7], c[8], c[9], c[11]});
  }
}

void Model::readDictionary(const std::string& name)
{
  LocalMgmtIfc* const found = store();
  if (found == nullptr)
  {
    say(2, "setAllManagedData Can't find OCMS");
    return;
  }
  ManageableData data;
  data.setRootId(name, found);
  if (!found->lookupData(data))
  {
    say(2, "setAllManagedData OCMS lookup failed for \"%s\"", name.c_str());
    return;
  }
  for (int number = 1;; ++number)
  {
    const auto read = [&](const std::string& key)
    {
      std::string value;
      data.interogate(name, "/item[" + std::to_string(number) + "]/" + key, value);
      return value;
    };
    ItemTexts texts;
    texts.rootId = read("rootId");
    if (texts.rootId.empty())
      return;
    texts.dasSchema = read("dasSchema");
    texts.dasItem = read("dasItem");
    texts.dasIndexName = read("dasIndexName");
    texts.dasIndexValue = read("dasIndexValue");
    texts.setter = read("setter");
    texts.getter = read("getter");
    texts.defaultValue = read("default");
    texts.userData = read("userData");
    texts.group = read("isGroupItem");
    texts.encrypted = read("dasEncrypted");
    trace(5, "setAllManagedData id=\"%s\"\tget=\"%s\"\tset=\"%s\"\tgrp=\"%s\"\tenc=\"%s\"\tusr=\"%s\"",
          texts.rootId.c_str(), texts.getter.c_str(), texts.setter.c_str(), texts.group.c_str(),
          texts.encrypted.c_str(), texts.userData.c_str());
    if (!texts.userData.empty())
    {
      userDataIds.push_back(texts.rootId);
      trace(5, "setAllManagedData id=\"%s\" added to list of userData", texts.rootId.c_str());
    }
    addItem(texts);
  }
}

void Model::addItem(const ItemTexts& texts)
{
  auto item = std::make_shared<ManagedDataItem>();
  item->rootId = texts.rootId;
  item->dasSchema = texts.dasSchema;
  item->dasItem = texts.dasItem;
  item->dasIndexName = texts.dasIndexName;
  item->dasIndexValue = texts.dasIndexValue;
  item->defaultValue = texts.defaultValue;
  item->isGroupItem = texts.group;
  item->dasEncrypted = texts.encrypted;
  const auto setter = setters.find(texts.setter);
  item->setter = setter == setters.end() ? nullptr : setter->second;
  const auto getter = getters.find(texts.getter);
  item->getter = getter == getters.end() ? nullptr : getter->second;
  items.push_back(item);
}

/// Of several items in one place the last one stays.
void Model::buildIndexes()
{
  dasImport.clear();
  localImport.clear();
  published.clear();
  local.clear();
  for (const Item& item : items)
  {
    const bool settable = item->setter != nullptr;
    if (!item->dasSchema.empty() && settable)
    {
      Schema& schema = dasImport[item->dasSchema];
      schema.indexName = item->dasIndexName;
      schema.items[{item->dasItem, item->dasIndexValue}] = item;
    }
    if (item->rootId.empty())
      continue;
    if (!item->dasSchema.empty())
      published[item->rootId] = item;
    if (item->dasSchema.empty())
      local[item->rootId] = item;
    if (item->dasSchema.empty() && settable)
      localImport[item->rootId] = item;
  }
}

void Model::pushDefaults(const std::string& prefix)
{
  for (const Item& item : std::vector<Item>(items))
  {
    if (item->dasSchema.empty() || item->setter == nullptr)
      continue;
    if (item->getter != nullptr && item->getter->getValue(item->dasIndexValue) != item->defaultValue)
      changed.push_back(item);
    if (!prefix.empty() && beginsWith(item->rootId, prefix))
    {
      trace(6, "initialiseCacheItems \"%s\" - setter not called", item->rootId.c_str());
    }
    else
    {
      std::string error;
      callSetter(*item, item->defaultValue, error);
    }
    if (!item->isGroupItem.empty())
    {
      trace(6, "initialiseCacheItems \"%s\"  found to be part of the group \"%s\"", item->rootId.c_str(),
            item->isGroupItem.c_str());
      flag(item->isGroupItem);
    }
  }
  for (const std::string& group : std::set<std::string>(groups))
  {
    std::string reason;
    if (!validateGroup(reason, group))
      say(2, "initialiseCacheItems %s failed validation \"%s\"", group.c_str(), reason.c_str());
  }
  forgetGroups();
}

void Model::importAllFromDas()
{
  trace(5, "importFromDAS");
  DataAccessServiceIfc* const das = dataAccess();
  if (das == nullptr)
  {
    say(2, "importFromDAS Can't find DataAccessService");
    return;
  }
  for (const auto& entry : std::map<std::string, Schema>(dasImport))
  {
    const std::string request = "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"" + entry.first +
                                "\"><ReasonForMessage>read_request</ReasonForMessage></Schema>";
    const std::string answer = das->sendRequest(request.c_str(), request.size());
    if (!parse(answer, true, nullptr))
      trace(3, "importFromDAS bad XML reply from DataAccessService \"%s\"", answer.c_str());
  }
  std::string reason;
  for (const std::string& group : std::set<std::string>(groups))
  {
    if (!validateGroup(reason, group))
      say(2, "importFromDAS \"%s\"  group: %s", reason.c_str(), group.c_str());
  }
  forgetGroups();
}

} // namespace judge
