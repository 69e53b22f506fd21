// What the local management store keeps.
#include <ManageableData.h>

#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <thread>

#include "HostTesting.h"
#include "SyncCounter.h"
#include "host/DeviceLog.h"
#include "host/LocalMgmtStore.h"

namespace
{
class LocalMgmtStore : public testing::Test
{
protected:
  void reopen()
  {
    store.reset();
    store = std::make_unique<host::LocalMgmtStore>(file);
  }
  std::string checked(const std::vector<std::string>& rootIds)
  {
    ManageableData data;
    for (const std::string& rootId : rootIds)
      data.addRootId(rootId, nullptr);
    store->checkData(data, nullptr);
    return data.getRootId();
  }
  std::string entry(const std::string& dictionary, const std::string& key)
  {
    ManageableData data;
    data.setRootId(dictionary, nullptr);
    EXPECT_TRUE(store->lookupData(data));
    std::string value;
    data.interogate(dictionary, key, value);
    return value;
  }

  hosttest::TemporaryFolder folder;
  const std::filesystem::path file = folder / "ocms.db";
  std::unique_ptr<host::LocalMgmtStore> store = std::make_unique<host::LocalMgmtStore>(file);
};
} // namespace

TEST_F(LocalMgmtStore, KeepsValuesOverARestart)
{
  store->change("item", "value");
  ManageableData data;
  data.populate("other", "other", "published");
  ASSERT_TRUE(store->publishData(data));
  reopen();
  EXPECT_EQ(store->value("item"), "value");
  EXPECT_EQ(store->value("other"), "published");
  EXPECT_EQ(store->value("Item"), std::nullopt);
}

TEST_F(LocalMgmtStore, KeepsAnyByte)
{
  const std::string odd("a\0\n\xFF':v", 7);
  store->change(odd, odd);
  store->defineDictionary(odd, {{odd, odd}});
  store->lockItem(odd);
  reopen();
  EXPECT_EQ(store->value(odd), odd);
  EXPECT_EQ(entry(odd, odd), odd);
  EXPECT_EQ(checked({odd}), odd);
}

TEST_F(LocalMgmtStore, EmptyValueIsAValue)
{
  store->change("item", "");
  EXPECT_EQ(store->value("item"), "");
}

TEST_F(LocalMgmtStore, PublicationWithAMissingValueStoresNothing)
{
  store->change("a", "old");
  ManageableData data;
  data.populate("a", "a", "new");
  data.addRootId("b", nullptr);
  EXPECT_FALSE(store->publishData(data));
  EXPECT_EQ(store->value("a"), "old");
}

TEST_F(LocalMgmtStore, LinesOfTheLogNameTheirSourceAndNoFolderOfItsBuild)
{
  host::openLog({folder / "log", 0, 6});
  ManageableData data;
  data.addRootId("b", nullptr);
  store->publishData(data);
  host::closeLog();
  const std::regex line(R"([^ ]+ 2 HostPlatform host/src/LocalMgmtStore\.cpp:\d+ publication of "b" without a value)");
  EXPECT_TRUE(std::regex_match(hosttest::linesOf(folder / "log").at(0), line));
}

TEST_F(LocalMgmtStore, PublicationThatFailsStoresNothing)
{
  store->change("a", "old");
  hosttest::runSql(file, "CREATE TRIGGER stop BEFORE INSERT ON item_values WHEN NEW.root_id = 'z' BEGIN SELECT "
                         "RAISE(FAIL, 'no'); END");
  ManageableData data;
  data.populate("a", "a", "new");
  data.populate("z", "z", "new");
  EXPECT_FALSE(store->publishData(data));
  EXPECT_EQ(store->value("a"), "old");
}

TEST_F(LocalMgmtStore, ChangeReachesTheDiskBeforeItReturns)
{
  const int before = hosttest::syncCount();
  store->change("item", "value");
  EXPECT_GT(hosttest::syncCount(), before);
}

TEST_F(LocalMgmtStore, LookupFailsWhenTheDatabaseDoes)
{
  hosttest::runSql(file, "DROP TABLE item_values");
  ManageableData data;
  data.addRootId("item", nullptr);
  EXPECT_FALSE(store->lookupData(data));
}

TEST_F(LocalMgmtStore, KeepsDictionariesOverARestart)
{
  store->defineDictionary("map", {{"/item[1]/rootId", "a"}, {"/item[2]/rootId", "b"}, {"/item[10]/rootId", "j"}});
  reopen();
  EXPECT_EQ(entry("map", "/item[1]/rootId"), "a");
  EXPECT_EQ(entry("map", "/item[10]/rootId"), "j");
  EXPECT_EQ(entry("map", "/item[3]/rootId"), "");
}

TEST_F(LocalMgmtStore, DictionaryIsReplacedWhole)
{
  store->defineDictionary("map", {{"/item[1]/rootId", "a"}, {"/item[2]/rootId", "b"}});
  store->defineDictionary("map", {{"/item[1]/rootId", "c"}});
  EXPECT_EQ(entry("map", "/item[1]/rootId"), "c");
  EXPECT_EQ(entry("map", "/item[2]/rootId"), "");
}

TEST_F(LocalMgmtStore, EmptyDictionaryExists)
{
  store->defineDictionary("map", {});
  EXPECT_EQ(entry("map", "/item[1]/rootId"), "");
}

TEST_F(LocalMgmtStore, DictionaryLookupDoesNotTouchTheListOfRootIds)
{
  store->defineDictionary("map", {{"/item[1]/rootId", "a"}});
  ManageableData data;
  data.setRootId("map", nullptr);
  ASSERT_TRUE(store->lookupData(data));
  std::vector<std::string> rootIds;
  data.getRootIds(rootIds);
  EXPECT_TRUE(rootIds.empty());
}

TEST_F(LocalMgmtStore, CheckNamesTheFirstLockedItemOfTheRecord)
{
  store->lockItem("b");
  store->lockItem("c");
  EXPECT_EQ(checked({"a"}), "");
  EXPECT_EQ(checked({"a", "c", "b"}), "c");
}

TEST_F(LocalMgmtStore, LocksLastOverARestartUntilUnlocked)
{
  store->lockItem("b");
  store->lockItem("a");
  store->lockItem("a");
  reopen();
  EXPECT_EQ(store->lockedItems(), (std::vector<std::string>{"a", "b"}));
  store->unlockItem("a");
  store->unlockItem("a");
  EXPECT_EQ(checked({"a"}), "");
  EXPECT_EQ(checked({"b"}), "b");
}

TEST_F(LocalMgmtStore, LockThatCannotBeReadCountsAsLocked)
{
  hosttest::runSql(file, "DROP TABLE locked_items");
  EXPECT_EQ(checked({"a", "b"}), "a");
  EXPECT_EQ(checked({}), "");
}

TEST_F(LocalMgmtStore, RefusesVersionsItDoesNotKnow)
{
  EXPECT_FALSE(store->registerService("service", nullptr, 2));
}

TEST_F(LocalMgmtStore, ErrorOfOpeningNamesFileAndReason)
{
  const auto text = folder / "text.db";
  hosttest::writeFile(text, "This is no database. " + std::string(2000, '.'));
  EXPECT_EQ(hosttest::errorOf([&] { host::LocalMgmtStore opened(text); }), text.string() + ": file is not a database");
}

TEST_F(LocalMgmtStore, ManyThreadsAtOnceLoseNothing)
{
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back(
        [this, t]
        {
          for (int i = 0; i < 25; ++i)
            store->change(std::to_string(t * 100 + i), "x");
        });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(hosttest::queryText(file, "SELECT count(*) FROM item_values"), "100");
}

TEST_F(LocalMgmtStore, DictionaryThatCannotBeReplacedStaysWhole)
{
  store->defineDictionary("map", {{"a", "1"}, {"b", "2"}});
  hosttest::runSql(file, "CREATE TRIGGER stop BEFORE INSERT ON dictionary_entries WHEN NEW.key = 'stop' BEGIN SELECT "
                         "RAISE(FAIL, 'no'); END");
  for (const char* name : {"map", "new"})
    EXPECT_NE(hosttest::errorOf([&] { store->defineDictionary(name, {{"a", "other"}, {"stop", ""}}); }), "");
  EXPECT_EQ(entry("map", "a"), "1");
  EXPECT_EQ(entry("map", "b"), "2");
  ManageableData data;
  data.setRootId("new", nullptr);
  EXPECT_FALSE(store->lookupData(data)) << "there is no half a dictionary";
}
