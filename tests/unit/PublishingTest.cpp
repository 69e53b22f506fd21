// Telling the local management store what changed.
#include <stdexcept>

#include "ManagerTest.h"

namespace
{

using unit::ElementsAre;
using unit::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;

class PublishingTest : public ManagerTest
{
protected:
  std::vector<std::string> publishing()
  {
    return traced([&] { access.publishChanges(); });
  }
};

TEST_F(PublishingTest, PublishesTheCurrentValuesInOneRecord)
{
  load({ItemLine("a").index("row", "7").get("a"), ItemLine("b").get("b")});
  getter("a").value = "1";
  getter("b").value = "2";
  access.changedItems = {&item("b"), &item("a")};
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(publishing(), ElementsAre("findService(\"LocalMgmtIfc\")", "log 5 publishChanges 2 changes",
                                        "get b(\"\")", "get a(\"7\")", "publishData(b=2,a=1)"));
  EXPECT_THAT(access.changedItems, IsEmpty());
}

TEST_F(PublishingTest, LogsNothingWhileTheGateIsClosed)
{
  load({ItemLine("a").get("a")});
  access.changedItems = {&item("a")};
  recording::behaviour().openLevel = 4;
  EXPECT_THAT(publishing(), ElementsAre("findService(\"LocalMgmtIfc\")", "get a(\"\")", "publishData(a=)"));
}

TEST_F(PublishingTest, PopulatesEachItemByRootIdTwiceRightAfterReadingIt)
{
  load({ItemLine("a").get("a"), ItemLine("b").get("b")});
  getter("a").value = "1";
  access.changedItems = {&item("a"), &item("b")};
  recording::behaviour().traceRecords = true;
  EXPECT_THAT(publishing(), ElementsAre("findService(\"LocalMgmtIfc\")", "get a(\"\")", "populate(a, a, 1)",
                                        "get b(\"\")", "populate(b, b, )", "publishData(a=1,b=)"));
}

TEST_F(PublishingTest, CountsZeroAndCallsNothingOnTheStoreForAnEmptyList)
{
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(publishing(), ElementsAre("findService(\"LocalMgmtIfc\")", "log 5 publishChanges 0 changes"));
}

TEST_F(PublishingTest, SkipsAnItemWithoutAGetterButCountsAndForgetsIt)
{
  load({ItemLine("a").get("a"), ItemLine("mute").set("mute"), ItemLine("b").get("b")});
  access.changedItems = {&item("a"), &item("mute"), &item("b")};
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(publishing(), ElementsAre("findService(\"LocalMgmtIfc\")", "log 5 publishChanges 3 changes",
                                        "get a(\"\")", "get b(\"\")", "publishData(a=,b=)"));
  EXPECT_THAT(access.changedItems, IsEmpty());
}

TEST_F(PublishingTest, PublishesNothingWhenNoItemHasAGetterAndForgetsThem)
{
  load({ItemLine("mute")});
  access.changedItems = {&item("mute")};
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(publishing(), ElementsAre("findService(\"LocalMgmtIfc\")", "log 5 publishChanges 1 changes"));
  EXPECT_THAT(access.changedItems, IsEmpty());
}

TEST_F(PublishingTest, ReportsAMissingStoreAndKeepsTheListForALaterRun)
{
  load({ItemLine("a").get("a")});
  access.changedItems = {&item("a")};
  withdraw("LocalMgmtIfc");
  EXPECT_THAT(publishing(), ElementsAre("findService(\"LocalMgmtIfc\")", "log 2 publishChanges - no OCMS interface"));
  EXPECT_THAT(access.changedItems, ElementsAre(&item("a")));
  context.services["LocalMgmtIfc"] = &store;
  EXPECT_EQ(publishing().back(), "publishData(a=)");
}

TEST_F(PublishingTest, CountsTheChangesBeforeItReportsAMissingStore)
{
  withdraw("LocalMgmtIfc");
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(publishing(), ElementsAre("findService(\"LocalMgmtIfc\")", "log 5 publishChanges 0 changes",
                                        "log 2 publishChanges - no OCMS interface"));
}

TEST_F(PublishingTest, ForgetsTheChangesEvenIfTheStoreRefusesThem)
{
  load({ItemLine("a").get("a")});
  access.changedItems = {&item("a")};
  store.publishes = false;
  recording::behaviour().openLevel = 6;
  EXPECT_EQ(publishing().back(), "publishData(a=)");
  EXPECT_THAT(access.changedItems, IsEmpty());
}

TEST_F(PublishingTest, ReadsAnItemTwiceThatStandsInTheListTwice)
{
  load({ItemLine("a").get("a")});
  access.changedItems = {&item("a"), &item("a")};
  EXPECT_THAT(publishing(),
              ElementsAre("findService(\"LocalMgmtIfc\")", "get a(\"\")", "get a(\"\")", "publishData(a=)"));
}

TEST_F(PublishingTest, TakesNoLockOfItsOwn)
{
  load({ItemLine("a").get("a")});
  access.changedItems = {&item("a")};
  recording::behaviour().traceLock = true;
  publishing();
  EXPECT_THAT(recording::traceOf("lock"), IsEmpty());
}

TEST_F(PublishingTest, CountsAndSkipsTheChangesOfItemsThatAreGone)
{
  load({ItemLine("a").get("a"), ItemLine("b").get("b")});
  access.changedItems = {&item("a"), &item("b")};
  manager.clearAllManagedData();
  load({ItemLine("c").get("c")});
  access.changedItems.push_back(&item("c"));
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(publishing(), ElementsAre("findService(\"LocalMgmtIfc\")", "log 5 publishChanges 3 changes",
                                        "get c(\"\")", "publishData(c=)"));
  EXPECT_THAT(access.changedItems, IsEmpty());
}

TEST_F(PublishingTest, KeepsTheChangesWhenAGetterThrows)
{
  load({ItemLine("a").get("a")});
  access.changedItems = {&item("a")};
  getter("a").hook = [] { throw std::runtime_error("getter"); };
  EXPECT_THROW(access.publishChanges(), std::runtime_error);
  EXPECT_THAT(access.changedItems, ElementsAre(&item("a")));
}

} // namespace
