// Reading the local management store's values at start-up.
#include <stdexcept>

#include <algorithm>

#include "ManagerTest.h"

namespace
{

using unit::ElementsAre;
using unit::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;

class ImportFromOCMSTest : public ManagerTest
{
protected:
  std::vector<std::string> importing()
  {
    return traced([&] { access.importFromOCMS(); });
  }
};

TEST_F(ImportFromOCMSTest, LogsEachStepAndHandsEachValueToItsSetter)
{
  load({ItemLine("b").set("b"), ItemLine("a").set("a")});
  store.values = {{"a", "1"}, {"b", "2"}};
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(importing(),
              ElementsAre("log 5 importFromOCMS", "findService(\"LocalMgmtIfc\")",
                          "log 5 importFromOCMS ocmsItemName = \"a\"", "log 5 importFromOCMS ocmsItemName = \"b\"",
                          "lookupData(a,b)", "log 5 importFromOCMS getData OK", "log 5 importFromOCMS ocmsTag = \"a\"",
                          "log 5 importFromOCMS got \"1\" from ocms for tag 'a'", "set a(\"1\", \"\")",
                          "log 5 importFromOCMS ocmsTag = \"b\"",
                          "log 5 importFromOCMS got \"2\" from ocms for tag 'b'", "set b(\"2\", \"\")"));
}

TEST_F(ImportFromOCMSTest, LogsNothingWhileTheGateIsClosed)
{
  load({ItemLine("a").set("a")});
  recording::behaviour().openLevel = 4;
  EXPECT_THAT(importing(), ElementsAre("findService(\"LocalMgmtIfc\")", "lookupData(a)", "set a(\"\", \"\")"));
}

TEST_F(ImportFromOCMSTest, AsksForAllItemsAtOnceAndReadsThemByRootIdTwice)
{
  load({ItemLine("b").set("b"), ItemLine("a").set("a")});
  store.values["a"] = "1";
  recording::behaviour().traceRecords = true;
  EXPECT_THAT(importing(), ElementsAre("findService(\"LocalMgmtIfc\")", "addRootId(a, null)", "addRootId(b, null)",
                                       "lookupData(a,b)", "interogate(a, a)", "set a(\"1\", \"\")", "interogate(b, b)",
                                       "set b(\"\", \"\")"));
}

TEST_F(ImportFromOCMSTest, LogsEachItemBeforeItEntersTheRequest)
{
  load({ItemLine("a").set("a")});
  recording::behaviour().traceRecords = true;
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(importing(),
              ::testing::IsSupersetOf({"log 5 importFromOCMS ocmsItemName = \"a\"", "addRootId(a, null)"}));
  const auto& lines = recording::trace();
  EXPECT_EQ(std::find(lines.begin(), lines.end(), "addRootId(a, null)") - 1,
            std::find(lines.begin(), lines.end(), "log 5 importFromOCMS ocmsItemName = \"a\""));
}

TEST_F(ImportFromOCMSTest, LooksUpAnEmptyRequestWhenThereIsNothingToImport)
{
  load({ItemLine("stored").das("S", "c").set("s"), ItemLine("noSetter")});
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(importing(), ElementsAre("log 5 importFromOCMS", "findService(\"LocalMgmtIfc\")", "lookupData()",
                                       "log 5 importFromOCMS getData OK"));
}

TEST_F(ImportFromOCMSTest, LooksUpAnEmptyRequestBeforeAMapIsLoaded)
{
  EXPECT_THAT(importing(), ElementsAre("findService(\"LocalMgmtIfc\")", "lookupData()"));
}

TEST_F(ImportFromOCMSTest, ReportsAMissingStoreEvenWhileTheGateIsClosed)
{
  load({ItemLine("a").set("a")});
  withdraw("LocalMgmtIfc");
  EXPECT_THAT(importing(), ElementsAre("findService(\"LocalMgmtIfc\")", "log 2 importFromOCMS Can't find OCMS"));
}

TEST_F(ImportFromOCMSTest, AFailedLookupIsReportedAndLeavesEveryItemUntouched)
{
  load({ItemLine("a").set("a"), ItemLine("b").set("b")});
  store.looksUp = false;
  EXPECT_THAT(importing(), ElementsAre("findService(\"LocalMgmtIfc\")", "lookupData(a,b)",
                                       "log 2 importFromOCMS OCMS lookup failed"));
}

TEST_F(ImportFromOCMSTest, AFailedLookupIsNotSaidToBeFine)
{
  store.looksUp = false;
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(importing(), ElementsAre("log 5 importFromOCMS", "findService(\"LocalMgmtIfc\")", "lookupData()",
                                       "log 2 importFromOCMS OCMS lookup failed"));
}

TEST_F(ImportFromOCMSTest, HandsOverAnEmptyTextForAValueThatTheStoreDoesNotHold)
{
  load({ItemLine("a").set("a"), ItemLine("b").set("b")});
  store.values = {{"a", "1"}};
  importing();
  EXPECT_THAT(recording::traceOf("set"), ElementsAre("set a(\"1\", \"\")", "set b(\"\", \"\")"));
}

TEST_F(ImportFromOCMSTest, GoesOnAfterASetterThatRefuses)
{
  load({ItemLine("a").set("a"), ItemLine("b").set("b")});
  setter("a").accepts = false;
  setter("a").remark = "refused";
  importing();
  EXPECT_THAT(recording::trace(), ElementsAre("findService(\"LocalMgmtIfc\")", "lookupData(a,b)", "set a(\"\", \"\")",
                                              "set b(\"\", \"\")"));
}

TEST_F(ImportFromOCMSTest, SaysNothingAboutARefusalEvenWhileTheGateIsOpen)
{
  load({ItemLine("a").set("a")});
  setter("a").accepts = false;
  setter("a").remark = "refused";
  recording::behaviour().openLevel = 6;
  EXPECT_EQ(importing().back(), "set a(\"\", \"\")");
}

TEST_F(ImportFromOCMSTest, OffersEachSetterAFreshReason)
{
  load({ItemLine("a").set("a"), ItemLine("b").set("b")});
  setter("a").remark = "refused";
  importing();
  EXPECT_EQ(setter("a").errorOnEntry, "no setter available");
  EXPECT_EQ(setter("b").errorOnEntry, "no setter available");
}

TEST_F(ImportFromOCMSTest, PassesOverAnItemThatLostItsSetter)
{
  load({ItemLine("a").set("a"), ItemLine("b").set("b")});
  item("a").setter = nullptr;
  importing();
  EXPECT_THAT(recording::traceOf("set"), ElementsAre("set b(\"\", \"\")"));
}

struct IndexCase
{
  const char* rootId;
  const char* index;
};

class ImportFromOCMSIndexTest : public ManagerTest, public ::testing::WithParamInterface<IndexCase>
{
};

TEST_P(ImportFromOCMSIndexTest, ChoosesTheIndexByTheEndOfTheRootId)
{
  load({ItemLine(GetParam().rootId).index("row", "configured").set("s")});
  access.importFromOCMS();
  EXPECT_THAT(recording::traceOf("set"), ElementsAre("set s(\"\", \"" + std::string(GetParam().index) + "\")"));
}

const std::vector<IndexCase> indexCases = {{"port-3", "3"},
                                           {"port-0012", "0012"},
                                           {"port3", "configured"},
                                           {"3", "configured"},
                                           {"0123456789", "configured"},
                                           {"port-", ""},
                                           {"a-1-2", "2"},
                                           {"a-1b2", "configured"},
                                           {"-7", "7"},
                                           {"-", ""},
                                           {"port", "configured"},
                                           {"port-x", "configured"},
                                           {"port-3x", "configured"},
                                           {"port-3 ", "configured"},
                                           {"port--4", "4"},
                                           {"port_5", "configured"},
                                           {"port-9876543210", "9876543210"}};

std::string nameOfIndexCase(const ::testing::TestParamInfo<IndexCase>& info)
{
  std::string name;
  for (const char c : std::string(info.param.rootId))
    name += c == '-' ? "Hyphen" : c == ' ' ? "Blank" : c == '_' ? "Underscore" : std::string(1, c);
  return name;
}

INSTANTIATE_TEST_SUITE_P(RootId, ImportFromOCMSIndexTest, ::testing::ValuesIn(indexCases), nameOfIndexCase);

TEST_F(ImportFromOCMSTest, GivesTheNumberAtTheEndOfTheRootIdInPlaceOfTheConfiguredIndex)
{
  load({ItemLine("port-3").index("row", "9").set("s")});
  importing();
  EXPECT_THAT(recording::traceOf("set"), ElementsAre("set s(\"\", \"3\")"));
}

TEST_F(ImportFromOCMSTest, GivesTheConfiguredIndexToARootIdOfDigitsOnly)
{
  load({ItemLine("3").index("row", "9").set("s")});
  importing();
  EXPECT_THAT(recording::traceOf("set"), ElementsAre("set s(\"\", \"9\")"));
}

TEST_F(ImportFromOCMSTest, TakesNoLetterForADigit)
{
  load({ItemLine("port-X3").index("row", "9").set("s")});
  importing();
  EXPECT_THAT(recording::traceOf("set"), ElementsAre("set s(\"\", \"9\")"));
}

TEST_F(ImportFromOCMSTest, GivesAnEmptyIndexWhenTheRootIdEndsInAHyphen)
{
  load({ItemLine("port-").index("row", "9").set("s")});
  importing();
  EXPECT_THAT(recording::traceOf("set"), ElementsAre("set s(\"\", \"\")"));
}

TEST_F(ImportFromOCMSTest, TakesTheLockForItsWholeRun)
{
  load({ItemLine("a").set("a")});
  recording::behaviour().traceLock = true;
  EXPECT_THAT(importing(),
              ElementsAre("lock", "findService(\"LocalMgmtIfc\")", "lookupData(a)", "set a(\"\", \"\")", "unlock"));
}

TEST_F(ImportFromOCMSTest, ReleasesTheLockWhenThereIsNoStore)
{
  withdraw("LocalMgmtIfc");
  importing();
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
}

TEST_F(ImportFromOCMSTest, ReleasesTheLockWhenASetterThrows)
{
  load({ItemLine("a").set("a")});
  setter("a").hook = [] { throw std::runtime_error("setter"); };
  EXPECT_THROW(access.importFromOCMS(), std::runtime_error);
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
}

TEST_F(ImportFromOCMSTest, ChangesNothingInTheManager)
{
  load({ItemLine("a").both("a").group("G")});
  importing();
  EXPECT_THAT(access.changedItems, IsEmpty());
  EXPECT_THAT(access.groups, IsEmpty());
  EXPECT_THAT(recording::traceOf("get"), IsEmpty());
}

} // namespace
