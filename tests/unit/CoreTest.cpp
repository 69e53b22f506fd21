// The manager itself: its surroundings, its services, what it answers about its items and how it forgets them.
#include <cstring>
#include <stdexcept>

#include "ManagerTest.h"
#include "NotingItem.h"

namespace
{

using unit::ElementsAre;
using unit::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;
using unit::NotingItem;

class CoreTest : public ManagerTest
{
};

TEST_F(CoreTest, IsConstructedWithAReentrantLockForOneHolderAndCallsNothingElse)
{
  recording::behaviour().openLevel = 6;
  std::unique_ptr<ServiceDataManager> made;
  EXPECT_THAT(traced([&] { made = std::make_unique<ServiceDataManager>(); }), ElementsAre("Semaphore(1, 1, true)"));
}

TEST_F(CoreTest, IsEmptyAfterConstruction)
{
  EXPECT_THAT(access.items, IsEmpty());
  EXPECT_THAT(access.changedItems, IsEmpty());
  EXPECT_THAT(access.userDataIds, IsEmpty());
  EXPECT_THAT(access.groups, IsEmpty());
  EXPECT_THAT(access.pendingRecords, IsEmpty());
  EXPECT_EQ(access.dasImportMap, nullptr);
  EXPECT_EQ(access.ocmsImportMap, nullptr);
  EXPECT_EQ(access.ocmsPublishMap, nullptr);
  EXPECT_EQ(access.ocmsSubscribeMap, nullptr);
  EXPECT_EQ(access.interfaceCount, 0U);
}

TEST_F(CoreTest, HasAnEmptyParserStateAfterConstruction)
{
  EXPECT_EQ(access.reply.schema, "");
  EXPECT_EQ(access.reply.indexColumn, "");
  EXPECT_EQ(access.reply.indexValue, "");
  EXPECT_EQ(access.reply.characters, "");
  EXPECT_EQ(access.reply.kind, "");
  EXPECT_EQ(access.reply.values, "");
}

TEST_F(CoreTest, IsMadeByTheFactory)
{
  const std::unique_ptr<ServiceDataManagerIfc> made = makeServiceDataManager();
  ASSERT_NE(dynamic_cast<ServiceDataManager*>(made.get()), nullptr);
  made->setup(&context, &agent, "made", &validator);
  EXPECT_TRUE(made->ready());
}

TEST_F(CoreTest, SetupTakesNoLockAndCallsNothing)
{
  recording::behaviour().openLevel = 6;
  recording::behaviour().traceLock = true;
  EXPECT_THAT(traced([&] { manager.setup(&context, &agent, "again", &validator); }), IsEmpty());
}

TEST_F(CoreTest, SetupReplacesNameAndAgent)
{
  manager.setup(&context, nullptr, "other", &validator);
  manager.ready();
  EXPECT_THAT(recording::traceOf("registerService"), ElementsAre("registerService(\"other\", null, 1)"));
}

TEST_F(CoreTest, SetStartupTakesNoLockAndCallsNothing)
{
  recording::behaviour().openLevel = 6;
  recording::behaviour().traceLock = true;
  EXPECT_THAT(traced([&] { manager.setStartup(false); }), IsEmpty());
}

TEST_F(CoreTest, ReadyRegistersTheServiceWithoutTakingTheLock)
{
  recording::behaviour().openLevel = 6;
  recording::behaviour().traceLock = true;
  EXPECT_THAT(traced([&] { EXPECT_TRUE(manager.ready()); }),
              ElementsAre("findService(\"LocalMgmtIfc\")", "registerService(\"phone\", agent, 1)"));
}

TEST_F(CoreTest, ReadyAnswersWhatTheStoreAnswered)
{
  store.registers = false;
  EXPECT_FALSE(manager.ready());
  store.registers = true;
  EXPECT_TRUE(manager.ready());
}

TEST_F(CoreTest, ReadyTwiceRegistersTwice)
{
  EXPECT_TRUE(manager.ready());
  EXPECT_TRUE(manager.ready());
  EXPECT_EQ(recording::traceOf("registerService").size(), 2U);
}

TEST_F(CoreTest, ReadyDoesNothingWithoutTheStore)
{
  withdraw("LocalMgmtIfc");
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(traced([&] { EXPECT_FALSE(manager.ready()); }), ElementsAre("findService(\"LocalMgmtIfc\")"));
}

TEST_F(CoreTest, ReadyDoesNothingBeforeSetup)
{
  ServiceDataManager fresh;
  EXPECT_THAT(traced([&] { EXPECT_FALSE(fresh.ready()); }), IsEmpty());
}

TEST_F(CoreTest, AsksForEachServiceByTheNameOfItsInterfaceAndOnlyOnce)
{
  const auto lookups = traced(
      [&]
      {
        for (int i = 0; i < 2; ++i)
        {
          EXPECT_EQ(access.dataAccessIfc(), &das);
          EXPECT_EQ(access.physicalInterfaceIfc(), &interfaces);
          EXPECT_EQ(access.ocmsIfc(), &store);
        }
      });
  EXPECT_THAT(lookups, ElementsAre("findService(\"DataAccessServiceIfc\")",
                                   "findService(\"PhysicalInterfaceServiceIfc\")", "findService(\"LocalMgmtIfc\")"));
}

TEST_F(CoreTest, FindsAServiceLaterThatWasAbsentAtFirst)
{
  withdraw("LocalMgmtIfc");
  EXPECT_EQ(access.ocmsIfc(), nullptr);
  EXPECT_EQ(access.ocmsIfc(), nullptr);
  context.services["LocalMgmtIfc"] = &store;
  EXPECT_EQ(access.ocmsIfc(), &store);
  EXPECT_EQ(access.ocmsIfc(), &store);
  EXPECT_EQ(recording::traceOf("findService").size(), 3U);
}

TEST_F(CoreTest, KeepsAServiceThatTheContextNoLongerOffers)
{
  EXPECT_EQ(access.dataAccessIfc(), &das);
  withdraw("DataAccessServiceIfc");
  EXPECT_EQ(access.dataAccessIfc(), &das);
}

TEST_F(CoreTest, RefusesAServiceOfAnotherKindAndAsksAgain)
{
  context.services["LocalMgmtIfc"] = &das;
  context.services["DataAccessServiceIfc"] = &interfaces;
  context.services["PhysicalInterfaceServiceIfc"] = &store;
  EXPECT_EQ(access.ocmsIfc(), nullptr);
  EXPECT_EQ(access.dataAccessIfc(), nullptr);
  EXPECT_EQ(access.physicalInterfaceIfc(), nullptr);
  context.services["LocalMgmtIfc"] = &store;
  EXPECT_EQ(access.ocmsIfc(), &store);
}

TEST_F(CoreTest, HasNoServicesWithoutAContext)
{
  manager.setup(nullptr, &agent, "phone", &validator);
  EXPECT_EQ(access.dataAccessIfc(), nullptr);
  EXPECT_EQ(access.physicalInterfaceIfc(), nullptr);
  EXPECT_EQ(access.ocmsIfc(), nullptr);
  EXPECT_THAT(recording::traceOf("findService"), IsEmpty());
}

TEST_F(CoreTest, LooksServicesUpWithoutTakingTheLock)
{
  recording::behaviour().traceLock = true;
  access.dataAccessIfc();
  access.physicalInterfaceIfc();
  access.ocmsIfc();
  EXPECT_THAT(recording::traceOf("lock"), IsEmpty());
}

TEST_F(CoreTest, GetItemKnowsTheItemsOfTheLocalStoreOnly)
{
  load({ItemLine("local"), ItemLine("stored").das("S", "c")});
  EXPECT_EQ(manager.getItem("local"), &item("local"));
  EXPECT_EQ(manager.getItem("stored"), nullptr);
  EXPECT_EQ(manager.getItem("unknown"), nullptr);
}

TEST_F(CoreTest, GetPublishedItemKnowsTheItemsOfTheDatabaseOnly)
{
  load({ItemLine("local"), ItemLine("stored").das("S", "c")});
  EXPECT_EQ(manager.getPublishedItem("stored"), &item("stored"));
  EXPECT_EQ(manager.getPublishedItem("local"), nullptr);
  EXPECT_EQ(manager.getPublishedItem("unknown"), nullptr);
}

TEST_F(CoreTest, LookupsByRootIdTakeTheLock)
{
  load({ItemLine("local")});
  recording::behaviour().traceLock = true;
  EXPECT_THAT(traced([&] { manager.getItem("local"); }), ElementsAre("lock", "unlock"));
  EXPECT_THAT(traced([&] { manager.getPublishedItem("local"); }), ElementsAre("lock", "unlock"));
}

TEST_F(CoreTest, LookupsByRootIdFindNothingBeforeAMapIsLoaded)
{
  EXPECT_EQ(manager.getItem("any"), nullptr);
  EXPECT_EQ(manager.getPublishedItem("any"), nullptr);
}

TEST_F(CoreTest, IsItemManagedComparesTheColumnAndNotTheRootId)
{
  load({ItemLine("first").das("S", "columnA"), ItemLine("second").das("S", "columnB")});
  EXPECT_TRUE(manager.isItemManaged("columnA"));
  EXPECT_TRUE(manager.isItemManaged("columnB"));
  EXPECT_FALSE(manager.isItemManaged("first"));
  EXPECT_FALSE(manager.isItemManaged("columna"));
  EXPECT_FALSE(manager.isItemManaged("column"));
}

TEST_F(CoreTest, IsItemManagedIsFalseWithoutItems)
{
  EXPECT_FALSE(manager.isItemManaged(""));
  EXPECT_FALSE(manager.isItemManaged("any"));
}

TEST_F(CoreTest, IsItemManagedTakesNoLockAndPassesOverMissingEntries)
{
  access.items.push_back(nullptr);
  load({ItemLine("local").das("S", "column")});
  recording::behaviour().traceLock = true;
  EXPECT_THAT(traced([&] { EXPECT_TRUE(manager.isItemManaged("column")); }), IsEmpty());
}

TEST_F(CoreTest, ClearingAnEmptyManagerTakesAndReleasesTheLock)
{
  recording::behaviour().openLevel = 6;
  recording::behaviour().traceLock = true;
  EXPECT_THAT(traced([&] { manager.clearAllManagedData(); }), ElementsAre("lock", "unlock"));
}

TEST_F(CoreTest, ClearingDeletesTheItemsFromTheBackUnderTheLock)
{
  for (const char* name : {"a", "b", "c"})
    access.items.push_back(new NotingItem(name));
  recording::behaviour().traceLock = true;
  EXPECT_THAT(traced([&] { manager.clearAllManagedData(); }),
              ElementsAre("lock", "delete item c", "delete item b", "delete item a", "unlock"));
  EXPECT_THAT(access.items, IsEmpty());
}

TEST_F(CoreTest, ClearingShrinksTheTableItemByItem)
{
  std::vector<std::size_t> left;
  for (const char* name : {"a", "b"})
    access.items.push_back(new NotingItem(name, [&] { left.push_back(access.items.size()); }));
  manager.clearAllManagedData();
  EXPECT_THAT(left, ElementsAre(1U, 0U));
}

TEST_F(CoreTest, ClearingPassesOverMissingEntries)
{
  access.items = {nullptr, new NotingItem("a"), nullptr};
  EXPECT_THAT(traced([&] { manager.clearAllManagedData(); }), ElementsAre("delete item a"));
  EXPECT_THAT(access.items, IsEmpty());
}

TEST_F(CoreTest, ClearingTakesTheIndexesAwayBeforeTheItems)
{
  bool indexesGone = false;
  access.items.push_back(new NotingItem("a",
                                        [&]
                                        {
                                          indexesGone = !access.dasImportMap && !access.ocmsImportMap &&
                                                        !access.ocmsPublishMap && !access.ocmsSubscribeMap;
                                        }));
  access.buildIndexes();
  ASSERT_NE(access.dasImportMap, nullptr);
  manager.clearAllManagedData();
  EXPECT_TRUE(indexesGone);
  EXPECT_EQ(manager.getItem("a"), nullptr);
}

TEST_F(CoreTest, ClearingKeepsCallbacksAndUserDataIds)
{
  load({ItemLine("a").das("S", "c").both("callback").user()});
  manager.clearAllManagedData();
  EXPECT_NE(access.findSetterFunc("callback"), nullptr);
  EXPECT_NE(access.findGetterFunc("callback"), nullptr);
  EXPECT_THAT(access.userDataIds, ElementsAre("a"));
  EXPECT_THAT(recording::traceOf("delete"), IsEmpty());
}

TEST_F(CoreTest, ClearingKeepsTheNumberOfChangesButPointsAtNoItemAnyMore)
{
  load({ItemLine("a"), ItemLine("b")});
  access.changedItems = {&item("a"), &item("b"), &item("a")};
  manager.clearAllManagedData();
  EXPECT_THAT(access.changedItems, ElementsAre(nullptr, nullptr, nullptr));
}

TEST_F(CoreTest, ClearingTwiceIsHarmless)
{
  load({ItemLine("a")});
  manager.clearAllManagedData();
  manager.clearAllManagedData();
  EXPECT_THAT(access.items, IsEmpty());
}

TEST_F(CoreTest, CanBeLoadedAgainAfterClearing)
{
  load({ItemLine("a")});
  manager.clearAllManagedData();
  load({ItemLine("b")});
  EXPECT_EQ(manager.getItem("a"), nullptr);
  EXPECT_EQ(manager.getItem("b"), &item("b"));
}

TEST_F(CoreTest, TellsItsEndAndFreesItsItemsUnderTheLock)
{
  access.items.push_back(new NotingItem("a"));
  recording::behaviour().openLevel = 5;
  recording::behaviour().traceLock = true;
  EXPECT_THAT(traced([&] { owned.reset(); }),
              ElementsAre("lock", "log 5 deleting sdm", "lock", "delete item a", "unlock", "unlock"));
}

TEST_F(CoreTest, EndsSilentlyWhileTheGateIsClosed)
{
  recording::behaviour().openLevel = 4;
  EXPECT_THAT(traced([&] { owned.reset(); }), IsEmpty());
}

TEST_F(CoreTest, FreesItsItemsEvenIfTheLogThrows)
{
  access.items.push_back(new NotingItem("a"));
  recording::behaviour().openLevel = 5;
  recording::behaviour().logHook = [](int, const std::string&) { throw std::runtime_error("log"); };
  EXPECT_THAT(traced([&] { owned.reset(); }), ElementsAre("log 5 deleting sdm", "delete item a"));
}

TEST_F(CoreTest, DoesNotDeleteTheCallbacksAtItsEnd)
{
  recording::Setter keptSetter("kept");
  recording::Getter keptGetter("kept");
  const auto ending = traced(
      [&]
      {
        ServiceDataManager mortal;
        mortal.addSetter({"kept", &keptSetter});
        mortal.addGetter({"kept", &keptGetter});
      });
  EXPECT_THAT(ending, ElementsAre("Semaphore(1, 1, true)"));
}

} // namespace
