// One item: its texts, its callbacks and how its flags are read.
#include <type_traits>

#include "ManagerTest.h"
#include "isEncrypted.h"

namespace
{

using unit::ElementsAre;
using unit::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;

class ManagedDataItemTest : public ManagerTest
{
};

TEST_F(ManagedDataItemTest, KeepsEachTextInItsOwnField)
{
  access.addDataItem("root", "schema", "column", "indexName", "indexValue", "default", "s", "g", "group", "enc");
  ASSERT_EQ(access.items.size(), 1U);
  const ManagedDataItem& made = *access.items.front();
  EXPECT_EQ(made.rootId, "root");
  EXPECT_EQ(made.dasSchema, "schema");
  EXPECT_EQ(made.dasItem, "column");
  EXPECT_EQ(made.dasIndexName, "indexName");
  EXPECT_EQ(made.dasIndexValue, "indexValue");
  EXPECT_EQ(made.defaultValue, "default");
  EXPECT_EQ(made.isGroupItem, "group");
  EXPECT_EQ(made.dasEncrypted, "enc");
}

TEST_F(ManagedDataItemTest, FindsItsCallbacksByTheirNames)
{
  setter("other");
  getter("other");
  recording::Setter& wantedSetter = setter("write");
  recording::Getter& wantedGetter = getter("read");
  access.addDataItem("root", "", "", "", "", "", "write", "read", "", "");
  EXPECT_EQ(item("root").setter, &wantedSetter);
  EXPECT_EQ(item("root").getter, &wantedGetter);
}

TEST_F(ManagedDataItemTest, TakesSettersFromTheSettersAndGettersFromTheGetters)
{
  setter("onlySetter");
  getter("onlyGetter");
  access.addDataItem("root", "", "", "", "", "", "onlyGetter", "onlySetter", "", "");
  EXPECT_EQ(item("root").setter, nullptr);
  EXPECT_EQ(item("root").getter, nullptr);
}

TEST_F(ManagedDataItemTest, LeavesOutAnUnregisteredCallbackWithoutAWord)
{
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(traced([&] { access.addDataItem("root", "", "", "", "", "", "no", "no", "", ""); }), IsEmpty());
  EXPECT_EQ(item("root").setter, nullptr);
  EXPECT_EQ(item("root").getter, nullptr);
}

TEST_F(ManagedDataItemTest, StaysWithoutASetterThatIsRegisteredLater)
{
  access.addDataItem("root", "", "", "", "", "", "late", "late", "", "");
  setter("late");
  getter("late");
  access.buildIndexes();
  EXPECT_EQ(item("root").setter, nullptr);
  EXPECT_EQ(item("root").getter, nullptr);
}

TEST_F(ManagedDataItemTest, MayBeEmptyInEveryField)
{
  access.addDataItem("", "", "", "", "", "", "", "", "", "");
  ASSERT_EQ(access.items.size(), 1U);
  EXPECT_EQ(access.items.front()->rootId, "");
  EXPECT_EQ(access.items.front()->setter, nullptr);
}

TEST_F(ManagedDataItemTest, FindsCallbacksRegisteredUnderTheEmptyName)
{
  recording::Setter& unnamed = setter("");
  access.addDataItem("root", "", "", "", "", "", "", "", "", "");
  EXPECT_EQ(item("root").setter, &unnamed);
}

TEST_F(ManagedDataItemTest, IsAddedBehindTheOthersEvenUnderTheSameRootId)
{
  access.addDataItem("root", "", "first", "", "", "", "", "", "", "");
  access.addDataItem("root", "", "second", "", "", "", "", "", "", "");
  ASSERT_EQ(access.items.size(), 2U);
  EXPECT_EQ(access.items[0]->dasItem, "first");
  EXPECT_EQ(access.items[1]->dasItem, "second");
}

TEST_F(ManagedDataItemTest, IsEncryptedOnlyByTheExactWordTrue)
{
  ManagedDataItem judged;
  for (const char* text : {"TRUE", "True", "yes", "1", "", "true ", " true", "true\r", "tru", "truetrue", "false"})
  {
    judged.dasEncrypted = text;
    EXPECT_FALSE(sdm::isEncrypted(judged)) << text;
  }
  judged.dasEncrypted = "true";
  EXPECT_TRUE(sdm::isEncrypted(judged));
}

TEST_F(ManagedDataItemTest, IsReadAsItStandsUnlessItsFlagIsExactlyTrue)
{
  access.addDataItem("capital", "S", "c", "", "", "", "", "", "", "TRUE");
  access.addDataItem("yes", "S", "c", "", "", "", "", "", "", "yes");
  access.addDataItem("exact", "S", "c", "", "", "", "", "", "", "true");
  const std::string stored = recording::encrypted("plain");
  access.reply.characters = stored;
  EXPECT_EQ(access.decryptData(&item("capital")), stored);
  EXPECT_EQ(access.decryptData(&item("yes")), stored);
  EXPECT_EQ(access.decryptData(&item("exact")), "plain");
}

TEST_F(ManagedDataItemTest, BelongsToTheGroupCalledBlankWhenItsGroupIsASingleBlank)
{
  load({ItemLine("blank").group(" "), ItemLine("none").group("")});
  access.processItemForGroupData(&item("none"));
  EXPECT_THAT(access.groups, IsEmpty());
  access.processItemForGroupData(&item("blank"));
  EXPECT_THAT(access.groups, ElementsAre(::testing::Key(" ")));
}

TEST_F(ManagedDataItemTest, LeavesItsCallbacksAliveWhenItIsDestroyed)
{
  load({ItemLine("root").both("callback")});
  manager.clearAllManagedData();
  EXPECT_THAT(recording::traceOf("delete"), IsEmpty());
  EXPECT_NE(access.findSetterFunc("callback"), nullptr);
  EXPECT_NE(access.findGetterFunc("callback"), nullptr);
}

TEST_F(ManagedDataItemTest, HasAVirtualDestructor)
{
  EXPECT_TRUE(std::has_virtual_destructor_v<ManagedDataItem>);
}

} // namespace
