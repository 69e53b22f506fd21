// Which changes of a group are tried, and in which orders.
#include "groups/Permutation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using namespace cli;
using namespace cli::groups;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace
{

MapItem item(const std::string& rootId, const std::string& byDefault, const std::string& alternative = "")
{
  MapItem made;
  made.rootId = rootId;
  made.defaultValue = byDefault;
  made.alternativeDefault = alternative;
  return made;
}

} // namespace

TEST(GroupChanges, AreEveryChoiceAmongFewValues)
{
  const MapItem first = item("first", "1", "2");
  const MapItem second = item("second", "a");
  const auto changes = changesOf({"G", {&first, &second}}, {{"second", {"b", "a"}}}, {{"first", "3"}});
  EXPECT_THAT(changes, UnorderedElementsAre(GroupChange{"1", "a"}, GroupChange{"1", "b"}, GroupChange{"2", "a"},
                                            GroupChange{"2", "b"}, GroupChange{"3", "a"}, GroupChange{"3", "b"}));
}

TEST(GroupChanges, AreAFewOfManyChoices)
{
  const std::vector<MapItem> items(6, item("same", "1", "2"));
  GroupOfItems group{"G", {}};
  for (const MapItem& each : items)
    group.members.push_back(&each);
  const auto changes = changesOf(group, {}, {});
  EXPECT_EQ(changes.size(), 8U);
  EXPECT_THAT(changes, testing::IsSupersetOf(
                           {GroupChange(6, "1"), GroupChange(6, "2"), GroupChange{"1", "1", "2", "1", "1", "1"}}));
}

TEST(GroupChanges, AreNeverMoreThanSixteen)
{
  const std::vector<MapItem> items(20, item("same", "1", "2"));
  GroupOfItems group{"G", {}};
  for (const MapItem& each : items)
    group.members.push_back(&each);
  EXPECT_EQ(changesOf(group, {}, {}).size(), 16U);
}

TEST(GroupOrders, AreAllOfUpToFiveMembers)
{
  EXPECT_THAT(ordersOf(1), ElementsAre(ElementsAre(0)));
  EXPECT_THAT(ordersOf(2), ElementsAre(ElementsAre(0, 1), ElementsAre(1, 0)));
  EXPECT_EQ(ordersOf(5).size(), 120U);
}

TEST(GroupOrders, AreTheSameSampleOfMoreMembersEachTime)
{
  const auto orders = ordersOf(7);
  EXPECT_EQ(orders, ordersOf(7));
  EXPECT_EQ(std::set<std::vector<std::size_t>>(orders.begin(), orders.end()).size(), 120U);
  EXPECT_THAT(orders, testing::IsSupersetOf({std::vector<std::size_t>{0, 1, 2, 3, 4, 5, 6},
                                             std::vector<std::size_t>{6, 5, 4, 3, 2, 1, 0}}));
  EXPECT_TRUE(std::all_of(orders.begin(), orders.end(),
                          [](auto order)
                          {
                            std::sort(order.begin(), order.end());
                            return order == std::vector<std::size_t>{0, 1, 2, 3, 4, 5, 6};
                          }));
}
