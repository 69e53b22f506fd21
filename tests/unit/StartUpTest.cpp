// The start-up sequence: which stages run, in which order, and what becomes of their failures.
#include <stdexcept>
#include <thread>

#include "ManagerTest.h"

namespace
{

using unit::ElementsAre;
using unit::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;
using unit::readReply;

const std::string readS = R"(sendRequest(<?xml version="1.0" encoding="utf-8"?><Schema name="S">)"
                          "<ReasonForMessage>read_request</ReasonForMessage></Schema>)";

class StartUpTest : public ManagerTest
{
protected:
  StartUpTest()
  {
    das.fallback = [](const std::string&) { return readReply("S", "<column>database</column>"); };
    store.values["local"] = "store";
    writeItemMap(ItemLine("stored").das("S", "column").standard("default").both("stored").text() + "\n" +
                 ItemLine("local").set("local").text() + "\n");
    setter("stored");
    getter("stored").value = "live";
    setter("local");
    recording::trace().clear();
  }

  std::vector<std::string> starting(const std::string& map = "CommsItemMap")
  {
    return traced([&] { manager.initialise(map); });
  }

  /// A first start, after which the next one is a later one.
  void startAndClearTheFlag()
  {
    manager.initialise("CommsItemMap");
    manager.setStartup(false);
  }
};

/// Tells how it was started.
class Overriding : public ServiceDataManager
{
public:
  void initialiseWithoutSettingDefaultData(const std::string& name, const std::string& prefix) override
  {
    recording::note("start \"" + name + "\" \"" + prefix + "\"");
  }
};

TEST_F(StartUpTest, AFirstStartLoadsSetsDefaultsImportsFromBothSidesAndDoesNotPublish)
{
  EXPECT_THAT(starting(),
              ElementsAre("findService(\"PhysicalInterfaceServiceIfc\")", "getInterfaceCount()", "get stored(\"\")",
                          "set stored(\"default\", \"\")", "findService(\"DataAccessServiceIfc\")", readS,
                          "set stored(\"database\", \"\")", "findService(\"LocalMgmtIfc\")", "subscribe(local, agent)",
                          "lookupData(local)", "set local(\"store\", \"\")"));
}

TEST_F(StartUpTest, AFirstStartTracesEachStage)
{
  recording::behaviour().openLevel = 5;
  starting();
  EXPECT_THAT(recording::traceOf("log"),
              ElementsAre("log 5 setAllManagedData CommsItemMap", "log 5 importFromDAS",
                          "log 5 parseXMLDasReply \"" + readReply("S", "<column>database</column>") + "\"",
                          "log 5 subscribeForObservations",
                          "log 5 subscribeForObservations MgmtAgent: \"phone\" subscribing for: \"local,\"",
                          "log 5 importFromOCMS", "log 5 importFromOCMS ocmsItemName = \"local\"",
                          "log 5 importFromOCMS getData OK", "log 5 importFromOCMS ocmsTag = \"local\"",
                          "log 5 importFromOCMS got \"store\" from ocms for tag 'local'"));
}

TEST_F(StartUpTest, AFirstStartKeepsTheChangedItemsForLater)
{
  starting();
  EXPECT_THAT(access.changedItems, ElementsAre(&item("stored")));
  EXPECT_THAT(recording::traceOf("publishData"), IsEmpty());
}

TEST_F(StartUpTest, ALaterStartKeepsTheTableImportsFromTheDatabaseAndPublishes)
{
  startAndClearTheFlag();
  access.changedItems.clear();
  EXPECT_THAT(starting(), ElementsAre("get stored(\"\")", "set stored(\"default\", \"\")", readS, "get stored(\"\")",
                                      "set stored(\"database\", \"\")", "get stored(\"\")", "get stored(\"\")",
                                      "publishData(stored=live)"));
  EXPECT_EQ(access.items.size(), 2U);
  EXPECT_THAT(access.changedItems, IsEmpty());
}

TEST_F(StartUpTest, ALaterStartTracesItsStages)
{
  startAndClearTheFlag();
  recording::behaviour().openLevel = 5;
  starting();
  EXPECT_THAT(recording::traceOf("log"),
              ElementsAre("log 5 importFromDAS",
                          "log 5 parseXMLDasReply \"" + readReply("S", "<column>database</column>") + "\"",
                          "log 5 publishChanges 3 changes"));
}

TEST_F(StartUpTest, ALaterStartPublishesWhatTheFirstOneFound)
{
  startAndClearTheFlag();
  ASSERT_EQ(access.changedItems.size(), 1U);
  getter("stored").value = "default";
  das.fallback = [](const std::string&) { return readReply("S", "<column>default</column>"); };
  EXPECT_EQ(starting().back(), "publishData(stored=default)");
}

TEST_F(StartUpTest, AnotherFirstStartAddsTheItemsOnceMore)
{
  starting();
  starting();
  EXPECT_EQ(access.items.size(), 4U);
}

TEST_F(StartUpTest, AFirstStartAfterClearingLoadsTheTableAnew)
{
  starting();
  manager.clearAllManagedData();
  starting();
  EXPECT_EQ(access.items.size(), 2U);
  EXPECT_THAT(recording::traceOf("set"), ElementsAre("set stored(\"default\", \"\")", "set stored(\"database\", \"\")",
                                                     "set local(\"store\", \"\")"));
}

TEST_F(StartUpTest, ALaterStartAfterClearingFindsNoItemsAndCountsTheChangesThatAreGone)
{
  startAndClearTheFlag();
  manager.clearAllManagedData();
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(starting(), ElementsAre("log 5 importFromDAS", "log 5 publishChanges 1 changes"));
  EXPECT_THAT(access.changedItems, IsEmpty());
}

TEST_F(StartUpTest, ALaterStartBeforeAnyLoadHasNothingToDo)
{
  manager.setStartup(false);
  EXPECT_THAT(starting(), ElementsAre("findService(\"DataAccessServiceIfc\")", "findService(\"LocalMgmtIfc\")"));
}

TEST_F(StartUpTest, InitialiseStartsThroughTheVirtualSlotWithAnEmptyPrefix)
{
  Overriding overriding;
  EXPECT_THAT(traced([&] { overriding.initialise("Map"); }), ElementsAre("start \"Map\" \"\""));
}

TEST_F(StartUpTest, InitialiseSparesNoItem)
{
  starting();
  EXPECT_EQ(recording::traceOf("set stored").front(), "set stored(\"default\", \"\")");
}

TEST_F(StartUpTest, ThePrefixSparesItemsFromTheirDefaults)
{
  traced([&] { manager.initialiseWithoutSettingDefaultData("CommsItemMap", "sto"); });
  EXPECT_THAT(recording::traceOf("set stored"), ElementsAre("set stored(\"database\", \"\")"));
}

TEST_F(StartUpTest, ThePrefixIsNotTheNameOfTheMap)
{
  traced([&] { manager.initialiseWithoutSettingDefaultData("Map", "CommsItemMap"); });
  EXPECT_EQ(recording::traceOf("lookupData").front(), "lookupData(Map)");
}

TEST_F(StartUpTest, HoldsTheLockFromTheFirstStepToTheLast)
{
  recording::behaviour().traceLock = true;
  const auto trace = starting();
  EXPECT_EQ(trace.front(), "lock");
  EXPECT_EQ(trace.back(), "unlock");
  // Once more in between, by the import from the store.
  EXPECT_EQ(recording::traceOf("lock").size(), 2U);
  EXPECT_EQ(recording::traceOf("unlock").size(), 2U);
  EXPECT_EQ(trace[trace.size() - 2], "unlock");
}

TEST_F(StartUpTest, CallsEveryoneUnderTheLock)
{
  std::vector<int> depths;
  const auto note = [&] { depths.push_back(recording::behaviour().lockDepth); };
  for (recording::Hook* hook : {&setter("stored").hook, &getter("stored").hook, &setter("local").hook, &das.hook,
                                &store.hook, &interfaces.hook, &context.hook, &validator.hook})
    *hook = note;
  startAndClearTheFlag();
  starting();
  EXPECT_EQ(depths.size(), 20U);
  EXPECT_THAT(depths, ::testing::Each(::testing::Ge(1)));
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
}

TEST_F(StartUpTest, PublishesAndDoesNotSubscribeWhenASetterClearsTheFlagBeforeTheSubscription)
{
  setter("stored").hook = [&] { manager.setStartup(false); };
  starting();
  EXPECT_THAT(recording::traceOf("subscribe"), IsEmpty());
  EXPECT_THAT(recording::traceOf("lookupData"), IsEmpty());
  EXPECT_EQ(recording::trace().back(), "publishData(stored=live)");
}

TEST_F(StartUpTest, SubscribesAndPublishesWhenASetterClearsTheFlagDuringTheStoreImport)
{
  setter("local").hook = [&] { manager.setStartup(false); };
  starting();
  EXPECT_EQ(recording::traceOf("subscribe").size(), 1U);
  EXPECT_EQ(recording::traceOf("lookupData").size(), 1U);
  EXPECT_EQ(recording::trace().back(), "publishData(stored=live)");
}

TEST_F(StartUpTest, ImportsFromTheStoreEvenIfTheFlagIsClearedWhileSubscribing)
{
  store.hook = [&] { manager.setStartup(false); };
  starting();
  EXPECT_THAT(recording::traceOf("set local"), ElementsAre("set local(\"store\", \"\")"));
  EXPECT_EQ(recording::trace().back(), "publishData(stored=live)");
}

TEST_F(StartUpTest, SubscribesWithoutLoadingWhenASetterSetsTheFlagDuringALaterStart)
{
  startAndClearTheFlag();
  setter("stored").hook = [&] { manager.setStartup(true); };
  starting();
  EXPECT_EQ(access.items.size(), 2U);
  EXPECT_EQ(recording::traceOf("subscribe").size(), 1U);
  EXPECT_EQ(recording::traceOf("lookupData").size(), 1U);
  EXPECT_THAT(recording::traceOf("publishData"), IsEmpty());
}

TEST_F(StartUpTest, LetsAnotherThreadChangeTheFlagMeanwhile)
{
  store.hook = [&] { std::thread([&] { manager.setStartup(false); }).join(); };
  starting();
  EXPECT_EQ(recording::trace().back(), "publishData(stored=live)");
}

TEST_F(StartUpTest, GoesOnWithoutItemsWhenNoMapHasTheName)
{
  EXPECT_THAT(starting("NoSuchMap"),
              ElementsAre("findService(\"LocalMgmtIfc\")", "lookupData(NoSuchMap)",
                          "log 2 setAllManagedData OCMS lookup failed for \"NoSuchMap\"",
                          "findService(\"DataAccessServiceIfc\")", "subscribe(, agent)", "lookupData()"));
}

TEST_F(StartUpTest, GoesOnWithTheItemsThatThereAreWhenNoMapHasTheName)
{
  load({ItemLine("before").das("S", "column").standard("d").set("before")});
  const auto trace = starting("NoSuchMap");
  EXPECT_THAT(recording::traceOf("set before"),
              ElementsAre("set before(\"d\", \"\")", "set before(\"database\", \"\")"));
}

TEST_F(StartUpTest, RunsToItsEndWithoutAnyService)
{
  context.services.clear();
  starting("NoSuchMap");
  EXPECT_THAT(recording::traceOf("log"),
              ElementsAre("log 2 setAllManagedData Can't find OCMS", "log 2 importFromDAS Can't find DataAccessService",
                          "log 2 subscribeForObservations Can't find OCMS", "log 2 importFromOCMS Can't find OCMS"));
}

TEST_F(StartUpTest, RunsToItsEndWhenEachStageFails)
{
  das.fallback = [](const std::string&) { return "no xml"; };
  store.subscribes = false;
  store.looksUp = false;
  recording::behaviour().openLevel = 3;
  starting();
  EXPECT_THAT(recording::traceOf("log"),
              ElementsAre("log 2 parser error [syntax error] at [1]\n",
                          "log 3 importFromDAS bad XML reply from DataAccessService \"no xml\"",
                          "log 2 subscribeForObservations Failed to subscribe for \"local,\"",
                          "log 2 importFromOCMS OCMS lookup failed"));
}

TEST_F(StartUpTest, ALaterStartRunsToItsEndWithoutTheStore)
{
  withdraw("LocalMgmtIfc");
  startAndClearTheFlag();
  EXPECT_EQ(starting().back(), "log 2 publishChanges - no OCMS interface");
  EXPECT_THAT(access.changedItems, ::testing::Not(IsEmpty()));
}

TEST_F(StartUpTest, ReleasesTheLockWhenACallbackThrowsAndStartsAgainAfterwards)
{
  starting();
  manager.clearAllManagedData();
  setter("local").hook = [] { throw std::runtime_error("setter"); };
  EXPECT_THROW(manager.initialise("CommsItemMap"), std::runtime_error);
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
  setter("local").hook = nullptr;
  manager.clearAllManagedData();
  EXPECT_EQ(starting().back(), "set local(\"store\", \"\")");
}

TEST_F(StartUpTest, ValidatesTheGroupsOfTheDefaultsBeforeThoseOfTheImport)
{
  writeItemMap(ItemLine("stored").das("S", "column").standard("default").set("stored").group("G").text() + "\n");
  starting();
  EXPECT_THAT(recording::trace(),
              ElementsAre("findService(\"PhysicalInterfaceServiceIfc\")", "getInterfaceCount()",
                          "set stored(\"default\", \"\")", "validateGroup(\"\", \"G\")", "clearGroup(\"G\")",
                          "findService(\"DataAccessServiceIfc\")", readS, "set stored(\"database\", \"\")",
                          "validateGroup(\"\", \"G\")", "clearGroup(\"G\")", "findService(\"LocalMgmtIfc\")",
                          "subscribe(, agent)", "lookupData()"));
}

} // namespace
