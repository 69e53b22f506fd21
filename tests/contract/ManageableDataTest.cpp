// The management record.
#include <ManageableData.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
using Texts = std::vector<std::string>;

Texts rootIdsOf(ManageableData& data)
{
  Texts rootIds;
  data.getRootIds(rootIds);
  return rootIds;
}
} // namespace

TEST(ManageableDataContract, NewRecordIsEmpty)
{
  ManageableData data;
  EXPECT_EQ(data.getRootId(), "");
  EXPECT_EQ(rootIdsOf(data), Texts());
  EXPECT_TRUE(data.isRejectListEmpty());
}

TEST(ManageableDataContract, KeepsItsOwnRootIdApartFromTheList)
{
  ManageableData data;
  data.setRootId("dictionary", nullptr);
  EXPECT_EQ(data.getRootId(), "dictionary");
  EXPECT_EQ(rootIdsOf(data), Texts());
  data.addRootId("item", nullptr);
  EXPECT_EQ(data.getRootId(), "dictionary");
}

TEST(ManageableDataContract, EmptyTextTakesItsOwnRootIdAway)
{
  ManageableData data;
  data.setRootId("dictionary", nullptr);
  data.setRootId("", nullptr);
  EXPECT_EQ(data.getRootId(), "");
}

TEST(ManageableDataContract, ListsRootIdsInTheOrderTheyCameIn)
{
  ManageableData data;
  for (const char* rootId : {"b", "a", "c"})
    data.addRootId(rootId, nullptr);
  EXPECT_EQ(rootIdsOf(data), (Texts{"b", "a", "c"}));
}

TEST(ManageableDataContract, RepeatedRootIdKeepsItsPlaceAndIsKeptOnce)
{
  ManageableData data;
  for (const char* rootId : {"b", "a", "b"})
    data.addRootId(rootId, nullptr);
  EXPECT_EQ(rootIdsOf(data), (Texts{"b", "a"}));
}

TEST(ManageableDataContract, AppendsToWhatTheListHeld)
{
  ManageableData data;
  data.addRootId("item", nullptr);
  Texts rootIds = {"before"};
  data.getRootIds(rootIds);
  EXPECT_EQ(rootIds, (Texts{"before", "item"}));
}

TEST(ManageableDataContract, ReadsBackWhatWasPopulated)
{
  ManageableData data;
  data.populate("item", "item", "value");
  std::string value;
  EXPECT_TRUE(data.interogate("item", "item", value));
  EXPECT_EQ(value, "value");
}

TEST(ManageableDataContract, MissingValueReadsAsEmptyAndFalse)
{
  ManageableData data;
  data.addRootId("item", nullptr);
  std::string value = "left over";
  EXPECT_FALSE(data.interogate("item", "item", value));
  EXPECT_EQ(value, "");
}

TEST(ManageableDataContract, EmptyValueIsAValue)
{
  ManageableData data;
  data.populate("item", "item", "");
  std::string value = "left over";
  EXPECT_TRUE(data.interogate("item", "item", value));
  EXPECT_EQ(value, "");
}

TEST(ManageableDataContract, LaterValueReplacesTheEarlierOne)
{
  ManageableData data;
  data.populate("item", "item", "old");
  data.populate("item", "item", "new");
  std::string value;
  data.interogate("item", "item", value);
  EXPECT_EQ(value, "new");
}

TEST(ManageableDataContract, RootIdAndNameTogetherFindTheValue)
{
  ManageableData data;
  data.populate("a", "bc", "first");
  data.populate("ab", "c", "second");
  std::string value;
  EXPECT_TRUE(data.interogate("a", "bc", value));
  EXPECT_EQ(value, "first");
  EXPECT_TRUE(data.interogate("ab", "c", value));
  EXPECT_EQ(value, "second");
  EXPECT_FALSE(data.interogate("a", "c", value));
}

TEST(ManageableDataContract, PopulatingTheRootIdItselfListsIt)
{
  ManageableData data;
  data.addRootId("first", nullptr);
  data.populate("item", "item", "value");
  data.populate("item", "item", "again");
  EXPECT_EQ(rootIdsOf(data), (Texts{"first", "item"}));
}

TEST(ManageableDataContract, PopulatingAnotherNameListsNothing)
{
  ManageableData data;
  data.populate("dictionary", "/item[1]/rootId", "value");
  EXPECT_EQ(rootIdsOf(data), Texts());
}

TEST(ManageableDataContract, KeepsAnyByte)
{
  const std::string odd("a\0\n\xFF\"", 5);
  ManageableData data;
  data.populate(odd, odd, odd);
  std::string value;
  EXPECT_TRUE(data.interogate(odd, odd, value));
  EXPECT_EQ(value, odd);
  EXPECT_EQ(rootIdsOf(data), Texts{odd});
}

TEST(ManageableDataContract, NamesAreComparedExactly)
{
  ManageableData data;
  data.populate("Item", "Item", "value");
  std::string value;
  EXPECT_FALSE(data.interogate("item", "item", value));
  EXPECT_FALSE(data.interogate("Item ", "Item ", value));
}

TEST(ManageableDataContract, RefusalEndsTheEmptinessOfItsList)
{
  ManageableData data;
  data.addRejectReason("item", "item", "");
  EXPECT_FALSE(data.isRejectListEmpty());
}

TEST(ManageableDataContract, NoRefusalCountsAsAllOfAnyReason)
{
  ManageableData data;
  EXPECT_TRUE(data.areAllRejectReasons("any"));
  EXPECT_TRUE(data.areAllRejectReasons(""));
}

TEST(ManageableDataContract, AllRefusalsMustCarryExactlyTheReason)
{
  ManageableData data;
  data.addRejectReason("a", "a", "same");
  data.addRejectReason("", "/", "same");
  EXPECT_TRUE(data.areAllRejectReasons("same"));
  EXPECT_FALSE(data.areAllRejectReasons("sam"));
  EXPECT_FALSE(data.areAllRejectReasons("same "));
  data.addRejectReason("b", "b", "other");
  EXPECT_FALSE(data.areAllRejectReasons("same"));
  EXPECT_FALSE(data.areAllRejectReasons("other"));
}
