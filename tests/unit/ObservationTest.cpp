// Subscribing for the local items, and applying what changed in the local management store.
#include <stdexcept>

#include "ManagerTest.h"

namespace
{

using unit::ElementsAre;
using unit::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;

class SubscriptionTest : public ManagerTest
{
protected:
  std::vector<std::string> subscribing()
  {
    return traced([&] { access.subscribeForObservations(); });
  }
};

TEST_F(SubscriptionTest, SubscribesForTheLocalItemsInTheirOrder)
{
  load({ItemLine("b"), ItemLine("stored").das("S", "c"), ItemLine("a").set("a")});
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(subscribing(),
              ElementsAre("log 5 subscribeForObservations", "findService(\"LocalMgmtIfc\")",
                          "log 5 subscribeForObservations MgmtAgent: \"phone\" subscribing for: \"a,b,\"",
                          "subscribe(a,b, agent)"));
}

TEST_F(SubscriptionTest, LogsNothingWhileTheGateIsClosed)
{
  load({ItemLine("a")});
  recording::behaviour().openLevel = 4;
  EXPECT_THAT(subscribing(), ElementsAre("findService(\"LocalMgmtIfc\")", "subscribe(a, agent)"));
}

TEST_F(SubscriptionTest, SubscribesForNothingWhenThereAreNoLocalItems)
{
  load({ItemLine("stored").das("S", "c")});
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(subscribing(), ElementsAre("log 5 subscribeForObservations", "findService(\"LocalMgmtIfc\")",
                                         "log 5 subscribeForObservations MgmtAgent: \"phone\" subscribing for: \"\"",
                                         "subscribe(, agent)"));
}

TEST_F(SubscriptionTest, SubscribesForNothingBeforeAMapIsLoaded)
{
  EXPECT_THAT(subscribing(), ElementsAre("findService(\"LocalMgmtIfc\")", "subscribe(, agent)"));
}

TEST_F(SubscriptionTest, NamesARepeatedRootIdOnce)
{
  load({ItemLine("a"), ItemLine("a")});
  EXPECT_EQ(subscribing().back(), "subscribe(a, agent)");
}

TEST_F(SubscriptionTest, PassesOnTheAgentOfTheSetup)
{
  manager.setup(&context, nullptr, "phone", &validator);
  EXPECT_EQ(subscribing().back(), "subscribe(, null)");
}

TEST_F(SubscriptionTest, ReportsAMissingStoreEvenWhileTheGateIsClosed)
{
  load({ItemLine("a")});
  withdraw("LocalMgmtIfc");
  EXPECT_THAT(subscribing(),
              ElementsAre("findService(\"LocalMgmtIfc\")", "log 2 subscribeForObservations Can't find OCMS"));
}

TEST_F(SubscriptionTest, ReportsARefusedSubscriptionOnceAndDoesNotTryAgain)
{
  load({ItemLine("b"), ItemLine("a")});
  store.subscribes = false;
  EXPECT_THAT(subscribing(), ElementsAre("findService(\"LocalMgmtIfc\")", "subscribe(a,b, agent)",
                                         "log 2 subscribeForObservations Failed to subscribe for \"a,b,\""));
}

TEST_F(SubscriptionTest, TakesNoLockOfItsOwn)
{
  load({ItemLine("a")});
  recording::behaviour().traceLock = true;
  EXPECT_THAT(subscribing(), ElementsAre("findService(\"LocalMgmtIfc\")", "subscribe(a, agent)"));
}

class ChangeNotificationTest : public ManagerTest
{
protected:
  std::vector<std::string> notifying(const std::vector<std::pair<std::string, std::string>>& values)
  {
    const auto data = request(values);
    const auto notes = traced([&] { manager.manageableDataChanged(*data); });
    EXPECT_THAT(recording::rejectReasons(*data), IsEmpty());
    return notes;
  }
};

TEST_F(ChangeNotificationTest, HandsEachValueToItsSetterInTheOrderOfTheRecord)
{
  load({ItemLine("a").set("a"), ItemLine("b").set("b")});
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(notifying({{"b", "2"}, {"a", "1"}}),
              ElementsAre("log 4 manageableDataChanged \"b\" = \"2\"", "set b(\"2\", \"\")",
                          "log 4 manageableDataChanged \"a\" = \"1\"", "set a(\"1\", \"\")"));
}

TEST_F(ChangeNotificationTest, LogsNothingWhileTheGateIsClosed)
{
  load({ItemLine("a").set("a"), ItemLine("b")});
  recording::behaviour().openLevel = 2;
  EXPECT_THAT(notifying({{"a", "1"}, {"b", "2"}}), ElementsAre("set a(\"1\", \"\")"));
}

TEST_F(ChangeNotificationTest, LogsEachLineAtItsOwnLevel)
{
  load({ItemLine("a").set("a"), ItemLine("b")});
  recording::behaviour().openLevel = 3;
  EXPECT_THAT(notifying({{"a", "1"}, {"b", "2"}}),
              ElementsAre("set a(\"1\", \"\")", "log 3 manageableDataChanged no setter available"));
}

TEST_F(ChangeNotificationTest, ShowsTheValueUnmasked)
{
  load({ItemLine("a").set("a")});
  recording::behaviour().secret = "a";
  recording::behaviour().openLevel = 4;
  EXPECT_EQ(notifying({{"a", "hush"}}).front(), "log 4 manageableDataChanged \"a\" = \"hush\"");
}

TEST_F(ChangeNotificationTest, ReadsEachValueByRootIdTwiceEvenThatOfAnUnknownItem)
{
  load({ItemLine("a").set("a")});
  const auto data = request({{"x", "1"}, {"a", "2"}});
  recording::behaviour().traceRecords = true;
  EXPECT_THAT(traced([&] { manager.manageableDataChanged(*data); }),
              ElementsAre("interogate(x, x)", "log 2 manageableDataChanged unknown item \"x\"",
                          R"(interogate(a, a) over "1")", "set a(\"2\", \"\")"));
}

TEST_F(ChangeNotificationTest, ReportsAnUnknownItemAndGoesOnWithTheOthers)
{
  load({ItemLine("a").set("a")});
  EXPECT_THAT(notifying({{"unknown", "1"}, {"a", "2"}}),
              ElementsAre("log 2 manageableDataChanged unknown item \"unknown\"", "set a(\"2\", \"\")"));
}

TEST_F(ChangeNotificationTest, TakesADatabaseItemForUnknown)
{
  load({ItemLine("stored").das("S", "c").set("s")});
  EXPECT_THAT(notifying({{"stored", "1"}}), ElementsAre("log 2 manageableDataChanged unknown item \"stored\""));
}

TEST_F(ChangeNotificationTest, KnowsNoItemBeforeAMapIsLoaded)
{
  EXPECT_THAT(notifying({{"a", "1"}}), ElementsAre("log 2 manageableDataChanged unknown item \"a\""));
}

TEST_F(ChangeNotificationTest, SkipsAnItemWithoutASetterAndSaysSo)
{
  load({ItemLine("a"), ItemLine("b").set("b")});
  recording::behaviour().openLevel = 4;
  EXPECT_THAT(notifying({{"a", "1"}, {"b", "2"}}),
              ElementsAre("log 4 manageableDataChanged \"a\" = \"1\"",
                          "log 3 manageableDataChanged no setter available",
                          "log 4 manageableDataChanged \"b\" = \"2\"", "set b(\"2\", \"\")"));
}

TEST_F(ChangeNotificationTest, IgnoresARefusalWithoutAWord)
{
  load({ItemLine("a").set("a"), ItemLine("b").set("b")});
  setter("a").accepts = false;
  setter("a").remark = "refused";
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(notifying({{"a", "1"}, {"b", "2"}}),
              ElementsAre("log 4 manageableDataChanged \"a\" = \"1\"", "set a(\"1\", \"\")",
                          "log 4 manageableDataChanged \"b\" = \"2\"", "set b(\"2\", \"\")"));
}

TEST_F(ChangeNotificationTest, OffersEachSetterAFreshReason)
{
  load({ItemLine("a").set("a"), ItemLine("b").set("b")});
  setter("a").remark = "refused";
  notifying({{"a", "1"}, {"b", "2"}});
  EXPECT_EQ(setter("a").errorOnEntry, "no setter available");
  EXPECT_EQ(setter("b").errorOnEntry, "no setter available");
}

TEST_F(ChangeNotificationTest, PassesTheConfiguredIndexAndNeverTheEndOfTheRootId)
{
  load({ItemLine("port-3").index("row", "9").set("port")});
  EXPECT_THAT(notifying({{"port-3", "1"}}), ElementsAre("set port(\"1\", \"9\")"));
}

TEST_F(ChangeNotificationTest, DoesNotCarryAValueOverToARootIdWithoutOne)
{
  load({ItemLine("a").set("a"), ItemLine("b").set("b")});
  const auto data = request({{"a", "1"}});
  data->addRootId("b", nullptr);
  EXPECT_THAT(traced([&] { manager.manageableDataChanged(*data); }),
              ElementsAre("set a(\"1\", \"\")", "set b(\"\", \"\")"));
}

TEST_F(ChangeNotificationTest, AppliesARepeatedRootIdAsOftenAsTheRecordNamesIt)
{
  load({ItemLine("a").set("a")});
  const auto data = request({{"a", "1"}});
  recording::repeatRootId(*data, "a");
  EXPECT_THAT(traced([&] { manager.manageableDataChanged(*data); }),
              ElementsAre("set a(\"1\", \"\")", "set a(\"1\", \"\")"));
}

TEST_F(ChangeNotificationTest, DoesNothingForAnEmptyRecord)
{
  load({ItemLine("a").set("a")});
  recording::behaviour().openLevel = 6;
  recording::behaviour().traceLock = true;
  EXPECT_THAT(notifying({}), ElementsAre("lock", "unlock"));
}

TEST_F(ChangeNotificationTest, HoldsTheLockForItsWholeRun)
{
  load({ItemLine("a").set("a")});
  recording::behaviour().traceLock = true;
  EXPECT_THAT(notifying({{"x", "1"}, {"a", "1"}}),
              ElementsAre("lock", "log 2 manageableDataChanged unknown item \"x\"", "set a(\"1\", \"\")", "unlock"));
}

TEST_F(ChangeNotificationTest, FlagsNoGroupAndNotesNoChange)
{
  load({ItemLine("a").both("a").group("G")});
  EXPECT_THAT(notifying({{"a", "1"}}), ElementsAre("set a(\"1\", \"\")"));
  EXPECT_THAT(access.groups, IsEmpty());
  EXPECT_THAT(access.changedItems, IsEmpty());
}

TEST_F(ChangeNotificationTest, ReleasesTheLockWhenASetterThrowsAndWorksAgainAfterwards)
{
  load({ItemLine("a").set("a")});
  setter("a").hook = [] { throw std::runtime_error("setter"); };
  const auto data = request({{"a", "1"}});
  EXPECT_THROW(manager.manageableDataChanged(*data), std::runtime_error);
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
  setter("a").hook = nullptr;
  EXPECT_THAT(notifying({{"a", "2"}}), ElementsAre("set a(\"2\", \"\")"));
}

} // namespace
