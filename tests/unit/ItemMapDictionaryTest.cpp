// Loading the item table from a dictionary of the local management store.
#include <stdexcept>

#include "DASImportMap.h"
#include "ManagerTest.h"

namespace
{

using unit::ElementsAre;
using unit::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;

class ItemMapDictionaryTest : public ManagerTest
{
protected:
  /// Puts the items into a dictionary, counted from `first`; what is empty is left out.
  void writeDictionary(const std::string& name, const std::vector<ItemLine>& lines, int first = 1)
  {
    auto& entries = store.dictionaries[name];
    int number = first;
    for (const ItemLine& line : lines)
    {
      const std::string prefix = "/item[" + std::to_string(number++) + "]/";
      for (const auto& [key, value] : {std::pair{"rootId", line.rootId},
                                       {"dasSchema", line.dasSchema},
                                       {"dasItem", line.dasItem},
                                       {"dasIndexName", line.dasIndexName},
                                       {"dasIndexValue", line.dasIndexValue},
                                       {"setter", line.setter},
                                       {"getter", line.getter},
                                       {"default", line.defaultValue},
                                       {"userData", line.userData},
                                       {"isGroupItem", line.isGroupItem},
                                       {"dasEncrypted", line.dasEncrypted}})
      {
        if (!value.empty())
          entries[prefix + key] = value;
      }
    }
  }

  std::vector<std::string> loading(const std::string& name)
  {
    return traced([&] { access.setAllManagedData(name); });
  }
};

TEST_F(ItemMapDictionaryTest, LogsEachItemAndEachUserDataItem)
{
  recording::behaviour().openLevel = 6;
  writeDictionary("Map", {ItemLine("a").set("s").get("g").group("G").encrypted("yes"), ItemLine("b").user("u")});
  EXPECT_THAT(loading("Map"),
              ElementsAre("log 5 setAllManagedData Map", "findService(\"LocalMgmtIfc\")", "lookupData(Map)",
                          "log 5 setAllManagedData id=\"a\"\tget=\"g\"\tset=\"s\"\tgrp=\"G\"\tenc=\"yes\"\tusr=\"\"",
                          "log 5 setAllManagedData id=\"b\"\tget=\"\"\tset=\"\"\tgrp=\"\"\tenc=\"\"\tusr=\"u\"",
                          "log 5 setAllManagedData id=\"b\" added to list of userData"));
}

TEST_F(ItemMapDictionaryTest, LogsNothingWhileTheGateIsClosed)
{
  recording::behaviour().openLevel = 4;
  writeDictionary("Map", {ItemLine("a").user()});
  EXPECT_THAT(loading("Map"), ElementsAre("findService(\"LocalMgmtIfc\")", "lookupData(Map)"));
  EXPECT_EQ(access.items.size(), 1U);
}

TEST_F(ItemMapDictionaryTest, ReadsTheElevenKeysInOrderUnderTheNameOfTheMap)
{
  writeDictionary("Map", {ItemLine("a")});
  recording::behaviour().traceRecords = true;
  std::vector<std::string> expected = {"findService(\"LocalMgmtIfc\")", "setRootId(Map, store)", "lookupData(Map)"};
  for (const char* key : {"rootId", "dasSchema", "dasItem", "dasIndexName", "dasIndexValue", "setter", "getter",
                          "default", "userData", "isGroupItem", "dasEncrypted"})
    expected.push_back("interogate(Map, /item[1]/" + std::string(key) + ")");
  expected.push_back("interogate(Map, /item[2]/rootId)");
  EXPECT_EQ(loading("Map"), expected);
}

TEST_F(ItemMapDictionaryTest, PutsEachEntryInItsField)
{
  ManagedItemSetter* const write = &setter("write");
  ManagedItemGetter* const read = &getter("read");
  writeDictionary(
      "Map",
      {ItemLine("a").das("S", "c").index("i", "7").standard("d").set("write").get("read").group("G").encrypted("e")});
  loading("Map");
  const ManagedDataItem& made = item("a");
  EXPECT_EQ(made.dasSchema, "S");
  EXPECT_EQ(made.dasItem, "c");
  EXPECT_EQ(made.dasIndexName, "i");
  EXPECT_EQ(made.dasIndexValue, "7");
  EXPECT_EQ(made.defaultValue, "d");
  EXPECT_EQ(made.setter, write);
  EXPECT_EQ(made.getter, read);
  EXPECT_EQ(made.isGroupItem, "G");
  EXPECT_EQ(made.dasEncrypted, "e");
}

TEST_F(ItemMapDictionaryTest, TakesMissingEntriesAsEmptyTexts)
{
  writeDictionary("Map", {ItemLine("full").das("S", "c").index("i", "7").standard("d"), ItemLine("bare")});
  loading("Map");
  const ManagedDataItem& made = item("bare");
  EXPECT_EQ(made.dasSchema + made.dasItem + made.dasIndexName + made.dasIndexValue, "");
  EXPECT_EQ(made.defaultValue + made.isGroupItem + made.dasEncrypted, "");
}

TEST_F(ItemMapDictionaryTest, NumbersItemsInDecimalWithoutLeadingZeros)
{
  std::vector<ItemLine> lines;
  for (int i = 1; i <= 12; ++i)
    lines.emplace_back("item" + std::to_string(i));
  writeDictionary("Map", lines);
  loading("Map");
  ASSERT_EQ(access.items.size(), 12U);
  EXPECT_EQ(access.items[9]->rootId, "item10");
  EXPECT_EQ(access.items[11]->rootId, "item12");
}

TEST_F(ItemMapDictionaryTest, StopsAtAnItemWithoutARootId)
{
  writeDictionary("Map", {ItemLine("a"), ItemLine(""), ItemLine("c")});
  loading("Map");
  EXPECT_EQ(access.items.size(), 1U);
}

TEST_F(ItemMapDictionaryTest, HasNoItemsWhenItemOneHasNoRootIdEvenIfItemTwoExists)
{
  writeDictionary("Map", {ItemLine("second")}, 2);
  loading("Map");
  EXPECT_THAT(access.items, IsEmpty());
  EXPECT_NE(access.ocmsSubscribeMap, nullptr);
}

TEST_F(ItemMapDictionaryTest, AlwaysTakesTheDefaultAndNeverAsksForTheInterfaceCount)
{
  interfaces.count = 3;
  access.interfaceCount = 9;
  writeDictionary("Map", {ItemLine("a").standard("usual").alternative("other")});
  store.dictionaries["Map"]["/item[1]/alternativeDefault"] = "other";
  EXPECT_THAT(loading("Map"), ElementsAre("findService(\"LocalMgmtIfc\")", "lookupData(Map)"));
  EXPECT_EQ(item("a").defaultValue, "usual");
  EXPECT_EQ(access.interfaceCount, 9U);
}

TEST_F(ItemMapDictionaryTest, ListsTheUserDataItemsInTheirOrderAndForgetsEarlierOnes)
{
  access.userDataIds = {"old"};
  writeDictionary("Map", {ItemLine("b").user(), ItemLine("x"), ItemLine("a").user("0")});
  loading("Map");
  EXPECT_THAT(access.userDataIds, ElementsAre("b", "a"));
}

TEST_F(ItemMapDictionaryTest, ServesTheCommsItemMapWhenThereIsNoFile)
{
  writeDictionary("CommsItemMap", {ItemLine("a")});
  EXPECT_THAT(loading("CommsItemMap"), ElementsAre("findService(\"LocalMgmtIfc\")", "lookupData(CommsItemMap)"));
  EXPECT_EQ(manager.getItem("a"), &item("a"));
}

TEST_F(ItemMapDictionaryTest, ServesEveryOtherMapNameEvenIfThereIsAFile)
{
  writeItemMap(ItemLine("file").text() + "\n");
  for (const char* name : {"commsitemmap", "CommsItemMap ", "CommsItemMap2", ""})
  {
    loading(name);
    EXPECT_THAT(recording::traceOf("getInterfaceCount"), IsEmpty()) << name;
  }
  EXPECT_THAT(access.items, IsEmpty());
}

TEST_F(ItemMapDictionaryTest, ReportsAMissingStoreEvenWhileTheGateIsClosed)
{
  withdraw("LocalMgmtIfc");
  EXPECT_THAT(loading("Map"), ElementsAre("findService(\"LocalMgmtIfc\")", "log 2 setAllManagedData Can't find OCMS"));
}

TEST_F(ItemMapDictionaryTest, ReportsAFailedLookupEvenWhileTheGateIsClosed)
{
  EXPECT_THAT(loading("Map"), ElementsAre("findService(\"LocalMgmtIfc\")", "lookupData(Map)",
                                          "log 2 setAllManagedData OCMS lookup failed for \"Map\""));
}

TEST_F(ItemMapDictionaryTest, UsesNothingOfWhatAFailedLookupLeftInTheRecord)
{
  store.dictionaries["Map"] = {{"/item[1]/rootId", "a"}};
  store.looksUp = false;
  loading("Map");
  EXPECT_THAT(access.items, IsEmpty());
}

TEST_F(ItemMapDictionaryTest, IndexesWhatThereIsAfterAFailure)
{
  access.addDataItem("before", "S", "c", "", "", "", "", "", "", "");
  access.userDataIds = {"old"};
  loading("Map");
  ASSERT_NE(access.ocmsPublishMap, nullptr);
  EXPECT_EQ(access.ocmsPublishMap->getItem("before"), &item("before"));
  EXPECT_NE(access.dasImportMap, nullptr);
  EXPECT_NE(access.ocmsImportMap, nullptr);
  EXPECT_NE(access.ocmsSubscribeMap, nullptr);
  EXPECT_THAT(access.userDataIds, IsEmpty());
}

TEST_F(ItemMapDictionaryTest, IndexesWhatThereIsWithoutAStore)
{
  access.addDataItem("before", "", "", "", "", "", "", "", "", "");
  withdraw("LocalMgmtIfc");
  loading("Map");
  EXPECT_EQ(manager.getItem("before"), &item("before"));
}

TEST_F(ItemMapDictionaryTest, AddsItsItemsToTheOnesBefore)
{
  writeDictionary("One", {ItemLine("a")});
  writeDictionary("Two", {ItemLine("a"), ItemLine("b")});
  loading("One");
  loading("Two");
  EXPECT_EQ(access.items.size(), 3U);
  EXPECT_EQ(manager.getItem("a"), access.items[1]);
}

TEST_F(ItemMapDictionaryTest, KeepsNothingOfAMapThatWasReadInPart)
{
  load({ItemLine("before").user()});
  writeDictionary("Map", {ItemLine("a").user(), ItemLine("b")});
  recording::behaviour().openLevel = 5;
  recording::behaviour().logHook = [](int, const std::string& text)
  {
    if (text.find("id=\"b\"") != std::string::npos)
      throw std::runtime_error("log");
  };
  EXPECT_THROW(access.setAllManagedData("Map"), std::runtime_error);
  ASSERT_EQ(access.items.size(), 1U);
  EXPECT_EQ(access.items.front()->rootId, "before");
  EXPECT_THAT(access.userDataIds, ElementsAre("before"));
  recording::behaviour().logHook = nullptr;
  loading("Map");
  EXPECT_EQ(access.items.size(), 3U);
}

TEST_F(ItemMapDictionaryTest, KeepsEarlierItemsWhenTheStoreThrows)
{
  load({ItemLine("before").user()});
  writeDictionary("Map", {ItemLine("a")});
  store.hook = [] { throw std::runtime_error("store"); };
  EXPECT_THROW(access.setAllManagedData("Map"), std::runtime_error);
  store.hook = nullptr;
  EXPECT_THAT(access.userDataIds, ElementsAre("before"));
  EXPECT_EQ(access.items.size(), 1U);
  EXPECT_EQ(manager.getItem("before"), &item("before"));
  loading("Map");
  EXPECT_EQ(manager.getItem("a"), &item("a"));
}

} // namespace
