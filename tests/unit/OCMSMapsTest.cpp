// The three indexes by root id: who is in them, and how they are searched.
#include <memory>
#include <type_traits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OCMSImportMap.h"
#include "OCMSPublishMap.h"
#include "OCMSSubscribeMap.h"
#include "ServiceDataManagerIfc.h"
#include "Services.h"
#include "Trace.h"

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Key;

class Table
{
public:
  ManagedDataItem& add(const std::string& rootId, const std::string& schema, bool withSetter)
  {
    owned.push_back(std::make_unique<ManagedDataItem>());
    ManagedDataItem& added = *owned.back();
    added.rootId = rootId;
    added.dasSchema = schema;
    added.setter = withSetter ? &setter : nullptr;
    items.push_back(&added);
    return added;
  }

  recording::Setter setter{"any"};
  std::vector<ManagedDataItem*> items;

private:
  std::vector<std::unique_ptr<ManagedDataItem>> owned;
};

/// What the three have in common, on items that each of them selects.
template <typename Map>
class OCMSMapsTest : public ::testing::Test
{
protected:
  ManagedDataItem& addSelected(const std::string& rootId)
  {
    return table.add(rootId, std::is_same_v<Map, OCMSPublishMap> ? "S" : "", true);
  }

  Table table;
};

using Maps = ::testing::Types<OCMSSubscribeMap, OCMSImportMap, OCMSPublishMap>;
struct MapNames
{
  template <typename Map>
  static std::string GetName(int)
  {
    return std::is_same_v<Map, OCMSSubscribeMap> ? "Subscribe"
           : std::is_same_v<Map, OCMSImportMap>  ? "Import"
                                                 : "Publish";
  }
};

TYPED_TEST_SUITE(OCMSMapsTest, Maps, MapNames);

TYPED_TEST(OCMSMapsTest, IsEmptyOverNoItems)
{
  TypeParam map(this->table.items);
  EXPECT_THAT(map.getItemMap(), IsEmpty());
  EXPECT_EQ(map.getItem("any"), nullptr);
  EXPECT_EQ(map.getItem(""), nullptr);
}

TYPED_TEST(OCMSMapsTest, LeavesOutAnItemWithoutARootIdWhateverElseItHas)
{
  for (const char* schema : {"", "S"})
  {
    this->table.add("", schema, true);
    this->table.add("", schema, false);
  }
  TypeParam map(this->table.items);
  EXPECT_THAT(map.getItemMap(), IsEmpty());
  EXPECT_EQ(map.getItem(""), nullptr);
}

TYPED_TEST(OCMSMapsTest, KeepsTheLaterOfTwoItemsWithTheSameRootId)
{
  this->addSelected("twice");
  ManagedDataItem& later = this->addSelected("twice");
  TypeParam map(this->table.items);
  EXPECT_EQ(map.getItem("twice"), &later);
  EXPECT_EQ(map.getItemMap().size(), 1U);
}

TYPED_TEST(OCMSMapsTest, ComparesKeysExactly)
{
  ManagedDataItem& wanted = this->addSelected("name");
  TypeParam map(this->table.items);
  EXPECT_EQ(map.getItem("name"), &wanted);
  for (const char* other : {"Name", "NAME", "name ", " name", "nam", "names", ""})
    EXPECT_EQ(map.getItem(other), nullptr) << other;
}

TYPED_TEST(OCMSMapsTest, ListsItsItemsInTheByteOrderOfTheirRootIds)
{
  for (const char* rootId : {"b", "a", "B", "ab", "\xC3\xA4", "a-10", "a-9"})
    this->addSelected(rootId);
  TypeParam map(this->table.items);
  EXPECT_THAT(map.getItemMap(),
              ElementsAre(Key("B"), Key("a"), Key("a-10"), Key("a-9"), Key("ab"), Key("b"), Key("\xC3\xA4")));
}

TYPED_TEST(OCMSMapsTest, CreatesNothingByLookingUp)
{
  TypeParam map(this->table.items);
  map.getItem("unknown");
  EXPECT_THAT(map.getItemMap(), IsEmpty());
}

TYPED_TEST(OCMSMapsTest, KnowsNothingOfItemsAddedLater)
{
  TypeParam map(this->table.items);
  this->addSelected("late");
  EXPECT_EQ(map.getItem("late"), nullptr);
}

TYPED_TEST(OCMSMapsTest, PassesOverMissingEntries)
{
  this->table.items.push_back(nullptr);
  ManagedDataItem& present = this->addSelected("present");
  TypeParam map(this->table.items);
  EXPECT_EQ(map.getItem("present"), &present);
}

TYPED_TEST(OCMSMapsTest, SaysNothing)
{
  recording::reset();
  recording::behaviour().openLevel = 6;
  this->addSelected("twice");
  this->addSelected("twice");
  TypeParam map(this->table.items);
  map.getItem("unknown");
  EXPECT_THAT(recording::trace(), IsEmpty());
  recording::reset();
}

class OCMSSelectionTest : public ::testing::Test
{
protected:
  OCMSSelectionTest()
  {
    table.add("local", "", false);
    table.add("localWithSetter", "", true);
    table.add("stored", "S", false);
    table.add("storedWithSetter", "S", true);
  }

  Table table;
};

TEST_F(OCMSSelectionTest, SubscribesForItemsWithoutASchema)
{
  EXPECT_THAT(OCMSSubscribeMap(table.items).getItemMap(), ElementsAre(Key("local"), Key("localWithSetter")));
}

TEST_F(OCMSSelectionTest, ImportsItemsWithoutASchemaThatHaveASetter)
{
  EXPECT_THAT(OCMSImportMap(table.items).getItemMap(), ElementsAre(Key("localWithSetter")));
}

TEST_F(OCMSSelectionTest, PublishesItemsWithASchemaWithOrWithoutASetter)
{
  EXPECT_THAT(OCMSPublishMap(table.items).getItemMap(), ElementsAre(Key("stored"), Key("storedWithSetter")));
}

TEST_F(OCMSSelectionTest, LetsASelectedItemStandEvenIfALaterOneOfItsNameIsNotSelected)
{
  ManagedDataItem& selected = table.add("name", "", true);
  table.add("name", "S", false);
  table.add("name", "", false);
  EXPECT_EQ(OCMSImportMap(table.items).getItem("name"), &selected);
}

TEST_F(OCMSSelectionTest, KnowsARootIdInTwoIndexesWhenTwoItemsShareIt)
{
  ManagedDataItem& local = table.add("name", "", true);
  ManagedDataItem& stored = table.add("name", "S", true);
  EXPECT_EQ(OCMSSubscribeMap(table.items).getItem("name"), &local);
  EXPECT_EQ(OCMSPublishMap(table.items).getItem("name"), &stored);
}

} // namespace
