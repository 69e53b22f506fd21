// Which items a reply of the database reaches, and under which keys.
#include "DASImportMap.h"

#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ServiceDataManagerIfc.h"
#include "Services.h"
#include "Trace.h"

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Key;

class DASImportMapTest : public ::testing::Test
{
protected:
  ManagedDataItem& add(const std::string& schema, const std::string& column, const std::string& indexName = "",
                       const std::string& indexValue = "")
  {
    owned.push_back(std::make_unique<ManagedDataItem>());
    ManagedDataItem& added = *owned.back();
    added.dasSchema = schema;
    added.dasItem = column;
    added.dasIndexName = indexName;
    added.dasIndexValue = indexValue;
    added.setter = &setter;
    items.push_back(&added);
    return added;
  }

  recording::Setter setter{"any"};
  recording::Getter getter{"any"};
  std::vector<std::unique_ptr<ManagedDataItem>> owned;
  std::vector<ManagedDataItem*> items;
};

TEST_F(DASImportMapTest, IsEmptyOverNoItems)
{
  DASImportMap map(items);
  EXPECT_THAT(map.getSchemaMap(), IsEmpty());
  EXPECT_EQ(map.getItem("", "", ""), nullptr);
}

TEST_F(DASImportMapTest, FindsAnItemBySchemaColumnAndIndexValue)
{
  ManagedDataItem& wanted = add("S", "column", "row", "1");
  DASImportMap map(items);
  EXPECT_EQ(map.getItem("S", "column", "1"), &wanted);
  EXPECT_EQ(map.getItem("T", "column", "1"), nullptr);
  EXPECT_EQ(map.getItem("S", "Column", "1"), nullptr);
  EXPECT_EQ(map.getItem("S", "column", "2"), nullptr);
}

TEST_F(DASImportMapTest, LeavesOutAnItemWithoutASchema)
{
  add("", "column");
  DASImportMap map(items);
  EXPECT_EQ(map.getItem("", "column", ""), nullptr);
  EXPECT_THAT(map.getSchemaMap(), IsEmpty());
}

TEST_F(DASImportMapTest, LeavesOutAnItemWithoutASetterEvenIfItHasAGetter)
{
  ManagedDataItem& readOnly = add("S", "column");
  readOnly.setter = nullptr;
  readOnly.getter = &getter;
  DASImportMap map(items);
  EXPECT_EQ(map.getItem("S", "column", ""), nullptr);
  EXPECT_THAT(map.getSchemaMap(), IsEmpty());
}

TEST_F(DASImportMapTest, KnowsTheSchemaOfALeftOutItemThroughAnother)
{
  add("S", "left out", "lost").setter = nullptr;
  add("S", "column", "row");
  DASImportMap map(items);
  EXPECT_THAT(map.getSchemaMap(), ElementsAre(Key("S")));
  EXPECT_EQ(map.getSchemaMap()["S"].items.size(), 1U);
  EXPECT_EQ(map.getItem("S", "left out", ""), nullptr);
}

TEST_F(DASImportMapTest, TakesASchemaOfBlanksForOne)
{
  ManagedDataItem& blank = add(" ", "column");
  DASImportMap map(items);
  EXPECT_EQ(map.getItem(" ", "column", ""), &blank);
}

TEST_F(DASImportMapTest, FindsEachRowOfAColumnUnderItsOwnIndexValue)
{
  ManagedDataItem& first = add("S", "column", "row", "1");
  ManagedDataItem& second = add("S", "column", "row", "2");
  DASImportMap map(items);
  EXPECT_EQ(map.getItem("S", "column", "1"), &first);
  EXPECT_EQ(map.getItem("S", "column", "2"), &second);
  EXPECT_EQ(map.getItem("S", "column", ""), nullptr);
}

TEST_F(DASImportMapTest, KeepsTheLaterOfTwoItemsInTheSamePlace)
{
  add("S", "column", "row", "1");
  ManagedDataItem& later = add("S", "column", "row", "1");
  DASImportMap map(items);
  EXPECT_EQ(map.getItem("S", "column", "1"), &later);
  EXPECT_EQ(map.getSchemaMap()["S"].items.size(), 1U);
}

TEST_F(DASImportMapTest, KeepsTheIndexNameOfTheSchemasLastItem)
{
  add("S", "a", "first", "1");
  add("S", "b", "last", "1");
  add("T", "a", "other", "1");
  DASImportMap map(items);
  EXPECT_EQ(map.getDasIndexName("S"), "last");
  EXPECT_EQ(map.getDasIndexName("T"), "other");
}

TEST_F(DASImportMapTest, LetsAnEmptyIndexNameReplaceAnEarlierOne)
{
  add("S", "a", "first", "1");
  add("S", "b");
  DASImportMap map(items);
  EXPECT_EQ(map.getDasIndexName("S"), "");
}

TEST_F(DASImportMapTest, HasNoIndexNameForAnUnknownSchemaNorForOneWithoutRows)
{
  add("S", "a");
  DASImportMap map(items);
  EXPECT_EQ(map.getDasIndexName("S"), "");
  EXPECT_EQ(map.getDasIndexName("unknown"), "");
}

TEST_F(DASImportMapTest, CreatesNothingByLookingUp)
{
  add("S", "a");
  DASImportMap map(items);
  map.getItem("unknown", "a", "");
  map.getItem("S", "unknown", "");
  map.getDasIndexName("unknown");
  EXPECT_THAT(map.getSchemaMap(), ElementsAre(Key("S")));
  EXPECT_EQ(map.getSchemaMap()["S"].items.size(), 1U);
}

TEST_F(DASImportMapTest, ListsTheSchemasInTheOrderOfTheirNames)
{
  for (const char* schema : {"b", "B", "a", "ab"})
    add(schema, "column");
  DASImportMap map(items);
  EXPECT_THAT(map.getSchemaMap(), ElementsAre(Key("B"), Key("a"), Key("ab"), Key("b")));
}

TEST_F(DASImportMapTest, TakesAnItemAtAnyTime)
{
  DASImportMap map(items);
  ManagedDataItem& entered = add("ignored", "ignored", "row", "ignored");
  entered.setter = nullptr;
  map.setItem("S", "column", "1", &entered);
  EXPECT_EQ(map.getItem("S", "column", "1"), &entered);
  EXPECT_EQ(map.getDasIndexName("S"), "row");
}

TEST_F(DASImportMapTest, ReplacesItemAndIndexNameOfAPlaceThatIsTaken)
{
  add("S", "column", "row", "1");
  DASImportMap map(items);
  ManagedDataItem& entered = add("S", "column", "renamed", "1");
  map.setItem("S", "column", "1", &entered);
  EXPECT_EQ(map.getItem("S", "column", "1"), &entered);
  EXPECT_EQ(map.getDasIndexName("S"), "renamed");
}

TEST_F(DASImportMapTest, EntersNothingForAMissingItem)
{
  DASImportMap map(items);
  map.setItem("S", "column", "1", nullptr);
  EXPECT_THAT(map.getSchemaMap(), IsEmpty());
}

TEST_F(DASImportMapTest, PassesOverMissingEntries)
{
  items.push_back(nullptr);
  ManagedDataItem& present = add("S", "column");
  DASImportMap map(items);
  EXPECT_EQ(map.getItem("S", "column", ""), &present);
}

TEST_F(DASImportMapTest, OnlyReadsTheItems)
{
  add("S", "column");
  add("", "column");
  const std::vector<ManagedDataItem*> before = items;
  DASImportMap map(items);
  EXPECT_EQ(items, before);
}

TEST(DasItemKeyTest, OrdersByTheColumnFirst)
{
  EXPECT_TRUE((DasItemKey{"a", "2"} < DasItemKey{"ab", "1"}));
  EXPECT_FALSE((DasItemKey{"ab", "1"} < DasItemKey{"a", "2"}));
}

TEST(DasItemKeyTest, OrdersRowsOfAColumnByTheirBytesAndNotAsNumbers)
{
  EXPECT_TRUE((DasItemKey{"a", "10"} < DasItemKey{"a", "9"}));
  EXPECT_FALSE((DasItemKey{"a", "9"} < DasItemKey{"a", "10"}));
  EXPECT_TRUE((DasItemKey{"a", ""} < DasItemKey{"a", "0"}));
}

TEST(DasItemKeyTest, ComparesUnsignedBytes)
{
  EXPECT_TRUE((DasItemKey{"z", ""} < DasItemKey{"\xC3\xA4", ""}));
  EXPECT_TRUE((DasItemKey{"a", "z"} < DasItemKey{"a", "\xC3\xA4"}));
}

TEST(DasItemKeyTest, FindsEqualKeysInNeitherOrder)
{
  EXPECT_FALSE((DasItemKey{"a", "1"} < DasItemKey{"a", "1"}));
}

} // namespace
