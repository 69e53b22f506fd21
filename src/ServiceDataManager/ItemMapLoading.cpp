// Filling the item table from a file or from a dictionary of the local management store.
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include <LocalMgmtIfc.h>
#include <ManageableData.h>
#include <PhysicalInterfaceServiceIfc.h>

#include "DASImportMap.h"
#include "ItemMapFile.h"
#include "Log.h"
#include "OCMSImportMap.h"
#include "OCMSPublishMap.h"
#include "OCMSSubscribeMap.h"
#include "Retire.h"
#include "ServiceDataManager.h"

namespace
{

const char* const itemMapFileName = "CommsSettings.csv";

/// Fills a text of a new item. By a new text, since an assigned one rounds its room up, and items live long.
void keep(std::string& field, const std::string& text)
{
  if (!text.empty())
    field = std::string(text);
}

/// The columns of one line as texts. What a line shares with the one before, and lines share much, is not copied again.
class LineTexts
{
public:
  void read(const sdm::ItemMapFile& file)
  {
    for (std::size_t i = 0; i < texts.size(); ++i)
    {
      const std::string_view text = file.text(static_cast<sdm::ItemMapColumn>(i));
      if (texts[i] != text)
        texts[i] = text;
    }
  }

  const std::string& operator[](sdm::ItemMapColumn column) const
  {
    return texts[static_cast<std::size_t>(column)];
  }

private:
  std::array<std::string, sdm::itemMapColumnCount> texts;
};

/// Tells why the current line is skipped: of a line that is read in pieces once, by its length. `toldTooLong` is the
/// number of the last line that was told so.
void tellOfSkippedLine(const sdm::ItemMapFile& file, unsigned long& toldTooLong)
{
  if (!file.lineIsTooLong())
    SDM_LOG(2, "setAllManagedData line %lu of \"%s\" has fewer than %zu columns", file.lineNumber(), itemMapFileName,
            sdm::itemMapColumnCount);
  else if (std::exchange(toldTooLong, file.lineNumber()) != file.lineNumber())
    SDM_LOG(2, "setAllManagedData line %lu of \"%s\" is longer than %zu characters", file.lineNumber(), itemMapFileName,
            sdm::ItemMapFile::longestLine);
}

/// The entries of a dictionary, item by item.
struct DictionaryItem
{
  ManageableData& record;
  const std::string& name;
  const std::string prefix;
  /// Kept for its room: an item has nearly as many as a line has columns.
  std::string& key;

  std::string read(const char* entry)
  {
    std::string value;
    key = prefix;
    key += entry;
    record.interogate(name, key, value);
    return value;
  }
};

} // namespace

void ServiceDataManager::setAllManagedData(const std::string& mapName)
{
  SDM_TRACE(5, "setAllManagedData %s", mapName.c_str());
  std::vector<std::string> userDataIdsBefore;
  userDataIdsBefore.swap(userDataIds);
  const std::size_t itemsBefore = items.size();
  try
  {
    loadItemMap(mapName);
  }
  catch (...)
  {
    // Half a map would stand in the way of loading it again; the table is as it was. An inner load may have
    // built the indexes over what goes.
    userDataIds.swap(userDataIdsBefore);
    if (items.size() > itemsBefore)
    {
      discardItemsFrom(itemsBefore);
      buildIndexes();
    }
    throw;
  }
  buildIndexes();
}

void ServiceDataManager::loadItemMap(const std::string& mapName)
{
  sdm::ItemMapFile file(itemMapFileName);
  if (mapName == "CommsItemMap" && file.isOpen())
    loadItemMapFile(file);
  else
    loadItemMapDictionary(mapName);
}

void ServiceDataManager::loadItemMapFile(sdm::ItemMapFile& file)
{
  using Column = sdm::ItemMapColumn;
  using Line = sdm::ItemMapFile::Line;

  PhysicalInterfaceServiceIfc* interfaces = physicalInterfaceIfc();
  interfaceCount = interfaces != nullptr ? interfaces->getInterfaceCount() : 0;
  const bool alternativesWanted = sdm::takesAlternativeDefaults(interfaceCount);
  LineTexts line;
  unsigned long tooLong = 0;
  for (Line kind = file.next(); kind != Line::end; kind = file.next())
  {
    if (kind == Line::readError)
    {
      SDM_LOG(2, "setAllManagedData Can't read \"%s\": %s", itemMapFileName, std::strerror(errno));
      return;
    }
    if (kind == Line::tooFewColumns)
    {
      tellOfSkippedLine(file, tooLong);
      continue;
    }
    line.read(file);
    const std::string& rootId = line[Column::rootId];
    if (!line[Column::userData].empty())
      userDataIds.push_back(rootId);
    const bool useAlternative = alternativesWanted && !line[Column::alternativeDefault].empty();
    addDataItem(rootId, line[Column::dasSchema], line[Column::dasItem], line[Column::dasIndexName],
                line[Column::dasIndexValue], line[useAlternative ? Column::alternativeDefault : Column::defaultValue],
                line[Column::setter], line[Column::getter], line[Column::isGroupItem], line[Column::dasEncrypted]);
  }
}

void ServiceDataManager::loadItemMapDictionary(const std::string& mapName)
{
  LocalMgmtIfc* store = ocmsIfc();
  if (store == nullptr)
  {
    SDM_LOG(2, "setAllManagedData Can't find OCMS");
    return;
  }
  ManageableData dictionary;
  dictionary.setRootId(mapName, store);
  if (!store->lookupData(dictionary))
  {
    SDM_LOG(2, "setAllManagedData OCMS lookup failed for \"%s\"", mapName.c_str());
    return;
  }
  using Column = sdm::ItemMapColumn;
  using sdm::keyOf;
  std::string key;
  for (int number = 1;; ++number)
  {
    DictionaryItem item{dictionary, mapName, "/item[" + std::to_string(number) + "]/", key};
    const std::string rootId = item.read(keyOf(Column::rootId));
    if (rootId.empty())
      return;
    const std::string dasSchema = item.read(keyOf(Column::dasSchema));
    const std::string dasItem = item.read(keyOf(Column::dasItem));
    const std::string dasIndexName = item.read(keyOf(Column::dasIndexName));
    const std::string dasIndexValue = item.read(keyOf(Column::dasIndexValue));
    const std::string setter = item.read(keyOf(Column::setter));
    const std::string getter = item.read(keyOf(Column::getter));
    const std::string defaultValue = item.read(keyOf(Column::defaultValue));
    const std::string userData = item.read(keyOf(Column::userData));
    const std::string isGroupItem = item.read(keyOf(Column::isGroupItem));
    const std::string dasEncrypted = item.read(keyOf(Column::dasEncrypted));
    SDM_TRACE(5, "setAllManagedData id=\"%s\"\tget=\"%s\"\tset=\"%s\"\tgrp=\"%s\"\tenc=\"%s\"\tusr=\"%s\"",
              rootId.c_str(), getter.c_str(), setter.c_str(), isGroupItem.c_str(), dasEncrypted.c_str(),
              userData.c_str());
    if (!userData.empty())
    {
      userDataIds.push_back(rootId);
      SDM_TRACE(5, "setAllManagedData id=\"%s\" added to list of userData", rootId.c_str());
    }
    addDataItem(rootId, dasSchema, dasItem, dasIndexName, dasIndexValue, defaultValue, setter, getter, isGroupItem,
                dasEncrypted);
  }
}

void ServiceDataManager::addDataItem(const std::string& rootId, const std::string& dasSchema,
                                     const std::string& dasItem, const std::string& dasIndexName,
                                     const std::string& dasIndexValue, const std::string& defaultValue,
                                     const std::string& setterName, const std::string& getterName,
                                     const std::string& isGroupItem, const std::string& dasEncrypted)
{
  auto item = std::make_unique<ManagedDataItem>();
  keep(item->rootId, rootId);
  keep(item->dasSchema, dasSchema);
  keep(item->dasItem, dasItem);
  keep(item->dasIndexName, dasIndexName);
  keep(item->dasIndexValue, dasIndexValue);
  item->setter = findSetterFunc(setterName);
  item->getter = findGetterFunc(getterName);
  keep(item->defaultValue, defaultValue);
  keep(item->isGroupItem, isGroupItem);
  keep(item->dasEncrypted, dasEncrypted);
  items.push_back(nullptr);
  items.back() = item.release();
}

void ServiceDataManager::buildIndexes()
{
  retire(std::exchange(dasImportMap, std::make_unique<DASImportMap>(items)));
  retire(std::exchange(ocmsImportMap, std::make_unique<OCMSImportMap>(items)));
  retire(std::exchange(ocmsPublishMap, std::make_unique<OCMSPublishMap>(items)));
  retire(std::exchange(ocmsSubscribeMap, std::make_unique<OCMSSubscribeMap>(items)));
}
