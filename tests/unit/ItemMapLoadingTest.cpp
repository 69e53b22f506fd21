// Loading the item table from the file.
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "DASImportMap.h"
#include "ManagerTest.h"

namespace
{

using unit::ElementsAre;
using unit::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;

class ItemMapLoadingTest : public ManagerTest
{
protected:
  void loadFile(const std::string& text)
  {
    writeItemMap(text);
    access.setAllManagedData("CommsItemMap");
  }

  void loadFile(const std::vector<ItemLine>& lines)
  {
    std::string text;
    for (const ItemLine& line : lines)
      text += line.text() + "\n";
    loadFile(text);
  }

  /// The default that column 11 or column 6 gives an item on a unit with this many interfaces.
  std::string defaultWith(std::uint32_t count, const std::string& alternative)
  {
    interfaces.count = count;
    manager.clearAllManagedData();
    loadFile({ItemLine("item").standard("usual").alternative(alternative)});
    return item("item").defaultValue;
  }
};

std::size_t openFiles()
{
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
    ++count;
  return count;
}

TEST_F(ItemMapLoadingTest, LogsTheMapNameThenAsksForTheInterfaceCountAndNothingElse)
{
  recording::behaviour().openLevel = 6;
  writeItemMap(ItemLine("a").text() + "\n" + ItemLine("user").user().text() + "\n");
  EXPECT_THAT(traced([&] { access.setAllManagedData("CommsItemMap"); }),
              ElementsAre("log 5 setAllManagedData CommsItemMap", "findService(\"PhysicalInterfaceServiceIfc\")",
                          "getInterfaceCount()"));
  EXPECT_EQ(access.items.size(), 2U);
}

TEST_F(ItemMapLoadingTest, LogsNothingWhileTheGateIsClosed)
{
  recording::behaviour().openLevel = 4;
  writeItemMap(ItemLine("a").text() + "\n");
  EXPECT_THAT(traced([&] { access.setAllManagedData("CommsItemMap"); }),
              ElementsAre("findService(\"PhysicalInterfaceServiceIfc\")", "getInterfaceCount()"));
}

TEST_F(ItemMapLoadingTest, PutsEachColumnInItsField)
{
  setter("7");
  getter("8");
  loadFile("1,2,3,4,5,6,7,8,9,10,11,12\n");
  const ManagedDataItem& made = item("1");
  EXPECT_EQ(made.dasSchema, "2");
  EXPECT_EQ(made.dasItem, "3");
  EXPECT_EQ(made.dasIndexName, "4");
  EXPECT_EQ(made.dasIndexValue, "5");
  EXPECT_EQ(made.defaultValue, "6");
  EXPECT_EQ(made.setter, &setter("7"));
  EXPECT_EQ(made.getter, &getter("8"));
  EXPECT_EQ(made.isGroupItem, "10");
  EXPECT_EQ(made.dasEncrypted, "12");
  EXPECT_THAT(access.userDataIds, ElementsAre("1"));
}

TEST_F(ItemMapLoadingTest, ReadsEveryLineInOrder)
{
  loadFile({ItemLine("c"), ItemLine("a"), ItemLine("b"), ItemLine("a")});
  std::vector<std::string> rootIds;
  for (const ManagedDataItem* made : access.items)
    rootIds.push_back(made->rootId);
  EXPECT_THAT(rootIds, ElementsAre("c", "a", "b", "a"));
}

TEST_F(ItemMapLoadingTest, SkipsALineOfNineCharactersAndReadsOneOfTen)
{
  // Ten characters hold too few commas, so what tells is the remark about them.
  EXPECT_THAT(traced([&] { loadFile("123456789\n"); }),
              ElementsAre("findService(\"PhysicalInterfaceServiceIfc\")", "getInterfaceCount()"));
  EXPECT_THAT(traced([&] { loadFile("1234567890\n"); }),
              ElementsAre("getInterfaceCount()",
                          "log 2 setAllManagedData line 1 of \"CommsSettings.csv\" has fewer than 12 columns"));
  loadFile(",,,,,,,,,,,\n");
  EXPECT_EQ(access.items.size(), 1U);
}

TEST_F(ItemMapLoadingTest, IgnoresWhatFollowsTheTwelfthComma)
{
  loadFile("a,,,,,,,,,,,true,junk,junk\n");
  EXPECT_EQ(item("a").dasEncrypted, "true");
}

TEST_F(ItemMapLoadingTest, SkipsALineOfTooFewColumnsAndReadsOn)
{
  const auto loading = traced([&] { loadFile("broken,,,,,,,,,,u\nb,,,,,,,,,,,\n"); });
  EXPECT_EQ(loading.back(), "log 2 setAllManagedData line 1 of \"CommsSettings.csv\" has fewer than 12 columns");
  ASSERT_EQ(access.items.size(), 1U);
  EXPECT_EQ(access.items.front()->rootId, "b");
  EXPECT_THAT(access.userDataIds, IsEmpty());
}

TEST_F(ItemMapLoadingTest, TellsOnceThatALineIsTooLongWhosePiecesAreSkipped)
{
  const std::string tooLong = "log 2 setAllManagedData line 2 of \"CommsSettings.csv\" is longer than 500 characters";
  const std::string tooFew = "log 2 setAllManagedData line 3 of \"CommsSettings.csv\" has fewer than 12 columns";
  const std::string cutInTheFirstColumn = std::string(505, 'a') + ",,,,,,,,,,,";
  const std::string cutInTheLastColumn = "a,,,,,,,,,,," + std::string(500, 'x');
  for (const std::string& remainder : {std::string(), std::string("r"), ",,,,,,,,,,," + std::string(500, 'x')})
  {
    for (const std::string& line : {cutInTheFirstColumn, cutInTheLastColumn})
    {
      loadFile("first,,,,,,,,,,,\n" + line + remainder + "\nbroken line\n");
      EXPECT_THAT(recording::traceOf("log 2"), ElementsAre(tooLong, tooFew)) << line << remainder;
      recording::trace().clear();
    }
  }
}

TEST_F(ItemMapLoadingTest, TellsNothingOfALongLineThatSkipsNothing)
{
  loadFile("a,,,,,,,,,,," + std::string(490, 'x') + "\n");
  EXPECT_THAT(recording::traceOf("log 2"), IsEmpty());
  EXPECT_EQ(access.items.size(), 1U);
}

TEST_F(ItemMapLoadingTest, TellsOfEveryLineThatIsTooLong)
{
  const std::string line = "a,,,,,,,,,,," + std::string(600, 'x') + "\n";
  loadFile(line + line);
  const std::string told = " of \"CommsSettings.csv\" is longer than 500 characters";
  EXPECT_THAT(recording::traceOf("log 2"),
              ElementsAre("log 2 setAllManagedData line 1" + told, "log 2 setAllManagedData line 2" + told));
}

TEST_F(ItemMapLoadingTest, KeepsTheCarriageReturnSoThatTheItemIsNotEncrypted)
{
  loadFile("a,S,c,,,,,,,,,true\r\n");
  EXPECT_EQ(item("a").dasEncrypted, "true\r");
  access.reply.characters = recording::encrypted("secret");
  EXPECT_EQ(access.decryptData(&item("a")), recording::encrypted("secret"));
}

TEST_F(ItemMapLoadingTest, ReadsTheRemainderOfALineOfMoreThanFiveHundredCharactersAsALine)
{
  loadFile("a,,,,,,,,,,," + std::string(488, 'x') + "rest,,,,,,,,,,,\n");
  ASSERT_EQ(access.items.size(), 2U);
  EXPECT_EQ(item("a").dasEncrypted, std::string(488, 'x'));
  EXPECT_EQ(access.items[1]->rootId, "rest");
}

TEST_F(ItemMapLoadingTest, SkipsAShortRemainderOfALongLine)
{
  loadFile("a,,,,,,,,,,," + std::string(488, 'x') + "123456789\n");
  EXPECT_EQ(access.items.size(), 1U);
}

TEST_F(ItemMapLoadingTest, TakesTheAlternativeDefaultOnUnitsWithTwoToFourInterfaces)
{
  for (const std::uint32_t count : {2U, 3U, 4U})
    EXPECT_EQ(defaultWith(count, "other"), "other") << count;
}

TEST_F(ItemMapLoadingTest, IgnoresTheAlternativeDefaultOnOtherUnits)
{
  for (const std::uint32_t count : {0U, 1U, 5U, 6U, 0x80000000U, 0xFFFFFFFFU})
    EXPECT_EQ(defaultWith(count, "other"), "usual") << count;
}

TEST_F(ItemMapLoadingTest, TakesTheUsualDefaultWhenTheAlternativeIsEmpty)
{
  EXPECT_EQ(defaultWith(3, ""), "usual");
}

TEST_F(ItemMapLoadingTest, MayReplaceAnEmptyDefaultByTheAlternative)
{
  interfaces.count = 2;
  loadFile({ItemLine("item").alternative("other")});
  EXPECT_EQ(item("item").defaultValue, "other");
}

TEST_F(ItemMapLoadingTest, KeepsTheInterfaceCount)
{
  interfaces.count = 7;
  loadFile(std::string());
  EXPECT_EQ(access.interfaceCount, 7U);
}

TEST_F(ItemMapLoadingTest, CountsAMissingInterfaceServiceAsNoInterfaces)
{
  interfaces.count = 3;
  withdraw("PhysicalInterfaceServiceIfc");
  access.interfaceCount = 9;
  EXPECT_THAT(traced([&] { loadFile({ItemLine("item").standard("usual").alternative("other")}); }),
              ElementsAre("findService(\"PhysicalInterfaceServiceIfc\")"));
  EXPECT_EQ(access.interfaceCount, 0U);
  EXPECT_EQ(item("item").defaultValue, "usual");
}

TEST_F(ItemMapLoadingTest, ListsTheUserDataItemsInTheirOrder)
{
  loadFile({ItemLine("b").user(), ItemLine("x"), ItemLine("a").user("0"), ItemLine("b").user(" ")});
  EXPECT_THAT(access.userDataIds, ElementsAre("b", "a", "b"));
}

TEST_F(ItemMapLoadingTest, ForgetsTheUserDataItemsOfTheMapBefore)
{
  access.userDataIds = {"old"};
  loadFile({ItemLine("a")});
  EXPECT_THAT(access.userDataIds, IsEmpty());
}

TEST_F(ItemMapLoadingTest, BuildsTheFourIndexes)
{
  setter("s");
  loadFile({ItemLine("local").set("s"), ItemLine("stored").das("S", "c").index("i", "1").set("s")});
  ASSERT_NE(access.dasImportMap, nullptr);
  EXPECT_EQ(access.dasImportMap->getItem("S", "c", "1"), &item("stored"));
  EXPECT_EQ(access.ocmsImportMap->getItem("local"), &item("local"));
  EXPECT_EQ(access.ocmsPublishMap->getItem("stored"), &item("stored"));
  EXPECT_EQ(access.ocmsSubscribeMap->getItem("local"), &item("local"));
}

TEST_F(ItemMapLoadingTest, BuildsTheIndexesOverAnEmptyFileToo)
{
  loadFile(std::string());
  ASSERT_NE(access.dasImportMap, nullptr);
  EXPECT_THAT(access.dasImportMap->getSchemaMap(), IsEmpty());
  EXPECT_THAT(access.ocmsImportMap->getItemMap(), IsEmpty());
  EXPECT_THAT(access.ocmsPublishMap->getItemMap(), IsEmpty());
  EXPECT_THAT(access.ocmsSubscribeMap->getItemMap(), IsEmpty());
}

TEST_F(ItemMapLoadingTest, ASecondLoadAddsItsItemsAndIndexesAllOfThem)
{
  loadFile({ItemLine("a").user()});
  loadFile({ItemLine("b").user()});
  EXPECT_EQ(access.items.size(), 2U);
  EXPECT_THAT(access.ocmsSubscribeMap->getItemMap(), ElementsAre(::testing::Key("a"), ::testing::Key("b")));
  EXPECT_THAT(access.userDataIds, ElementsAre("b"));
}

TEST_F(ItemMapLoadingTest, TakesNoLockOfItsOwn)
{
  writeItemMap(ItemLine("a").text() + "\n");
  recording::behaviour().traceLock = true;
  access.setAllManagedData("CommsItemMap");
  EXPECT_THAT(recording::traceOf("lock"), IsEmpty());
}

TEST_F(ItemMapLoadingTest, ClosesTheFile)
{
  loadFile({ItemLine("a")});
  const std::size_t before = openFiles();
  loadFile({ItemLine("a")});
  access.setAllManagedData("OtherMap");
  withdraw("LocalMgmtIfc");
  access.setAllManagedData("OtherMap");
  EXPECT_EQ(openFiles(), before);
}

TEST_F(ItemMapLoadingTest, OpensTheFileWhateverTheMapIsCalled)
{
  writeItemMap("");
  const int watch = inotify_init1(IN_NONBLOCK);
  ASSERT_GE(watch, 0);
  ASSERT_GE(inotify_add_watch(watch, "CommsSettings.csv", IN_OPEN), 0);
  access.setAllManagedData("OtherMap");
  inotify_event event{};
  const ssize_t length = read(watch, &event, sizeof event);
  close(watch);
  ASSERT_EQ(length, static_cast<ssize_t>(sizeof event));
  EXPECT_NE(event.mask & IN_OPEN, 0U);
}

TEST_F(ItemMapLoadingTest, ReportsAFileThatCanNotBeReadAndIndexesWhatThereIs)
{
  load({ItemLine("before")});
  access.ocmsSubscribeMap.reset();
  std::filesystem::create_directory("CommsSettings.csv");
  const auto loading = traced([&] { access.setAllManagedData("CommsItemMap"); });
  EXPECT_EQ(loading.back(), "log 2 setAllManagedData Can't read \"CommsSettings.csv\": Is a directory");
  ASSERT_NE(access.ocmsSubscribeMap, nullptr);
  EXPECT_EQ(access.ocmsSubscribeMap->getItem("before"), &item("before"));
}

TEST_F(ItemMapLoadingTest, LeavesThingsAsTheyWereWhenTheInterfaceServiceThrows)
{
  loadFile({ItemLine("before").user()});
  interfaces.hook = [] { throw std::runtime_error("interfaces"); };
  EXPECT_THROW(loadFile({ItemLine("a")}), std::runtime_error);
  interfaces.hook = nullptr;
  EXPECT_THAT(access.userDataIds, ElementsAre("before"));
  EXPECT_EQ(access.items.size(), 1U);
  EXPECT_EQ(manager.getItem("before"), &item("before"));
  loadFile({ItemLine("a")});
  EXPECT_EQ(manager.getItem("a"), &item("a"));
}

TEST_F(ItemMapLoadingTest, LoadsAThousandLines)
{
  std::vector<ItemLine> lines;
  for (int i = 0; i < 1000; ++i)
    lines.emplace_back("item-" + std::to_string(i));
  loadFile(lines);
  EXPECT_EQ(access.items.size(), 1000U);
  EXPECT_EQ(access.items.back()->rootId, "item-999");
}

TEST_F(ItemMapLoadingTest, LoadsALineThatBeginsWithAHashAsAnItem)
{
  loadFile("#a,S,c,,,,,,,,,\n# only a remark\n");
  ASSERT_EQ(access.items.size(), 1U);
  EXPECT_EQ(manager.getPublishedItem("#a"), access.items.front());
  EXPECT_EQ(recording::trace().back(),
            "log 2 setAllManagedData line 2 of \"CommsSettings.csv\" has fewer than 12 columns");
}

} // namespace
