// Importing from the database: everything at start-up, or one item for a caller.
#include "ManagerTest.h"

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;
using unit::readReply;

const std::string schemaRequest(const std::string& schema)
{
  return R"(sendRequest(<?xml version="1.0" encoding="utf-8"?><Schema name=")" + schema +
         R"("><ReasonForMessage>read_request</ReasonForMessage></Schema>))";
}

class ImportFromDAS : public ManagerTest
{
protected:
  std::vector<std::string> import()
  {
    access.dataAccessIfc();
    return traced([&] { access.importFromDAS(); });
  }
};

TEST_F(ImportFromDAS, SendsOneRequestASchemaInTheOrderOfTheirNames)
{
  load({ItemLine("z").das("Zoo", "C").set("z"), ItemLine("a1").das("Ant", "C").index("I", "1").set("a"),
        ItemLine("a2").das("Ant", "C").index("I", "2").set("a")});
  EXPECT_THAT(import(), ElementsAre(schemaRequest("Ant"), schemaRequest("Zoo")));
}

TEST_F(ImportFromDAS, AppliesRowsAndLeavesItemsAloneWhoseColumnIsMissing)
{
  load({ItemLine("a1").das("S", "C").index("I", "1").set("one"),
        ItemLine("a2").das("S", "C").index("I", "2").set("two"),
        ItemLine("b").das("S", "D").index("I", "1").set("other")});
  das.replies = {readReply("S", "<Entry><I>1</I><C>x</C></Entry><Entry><I>2</I><C>y</C></Entry>")};
  EXPECT_THAT(import(), ElementsAre(schemaRequest("S"), R"(set one("x", "1"))", R"(set two("y", "2"))"));
}

TEST_F(ImportFromDAS, SkipsItemsOutsideTheImportMap)
{
  load({ItemLine("local").set("local"), ItemLine("readonly").das("S", "C").get("readonly")});
  EXPECT_THAT(import(), IsEmpty());
}

TEST_F(ImportFromDAS, TracesItsStartWhileLevelFiveIsOpen)
{
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(import(), ElementsAre("log 5 importFromDAS"));
  recording::behaviour().openLevel = 4;
  EXPECT_THAT(import(), IsEmpty());
}

TEST_F(ImportFromDAS, DoesNothingWithoutADatabaseAndKeepsTheGroups)
{
  withdraw("DataAccessServiceIfc");
  load({ItemLine("i").das("S", "C").set("i")});
  access.groups["g"] = true;
  EXPECT_THAT(traced([&] { access.importFromDAS(); }), ElementsAre(R"(findService("DataAccessServiceIfc"))",
                                                                   "log 2 importFromDAS Can't find DataAccessService"));
  EXPECT_EQ(access.groups.size(), 1U);
}

TEST_F(ImportFromDAS, GoesOnWithTheNextSchemaAfterABadReply)
{
  load({ItemLine("a").das("A", "C").set("a"), ItemLine("b").das("B", "C").set("b")});
  das.replies = {"<oops", readReply("B", "<C>v</C>")};
  EXPECT_THAT(import(), ElementsAre(schemaRequest("A"), "log 2 parser error [unclosed token] at [1]\n",
                                    schemaRequest("B"), R"(set b("v", ""))"));
}

TEST_F(ImportFromDAS, ShowsABadReplyWhileLevelThreeIsOpen)
{
  load({ItemLine("a").das("A", "C").set("a")});
  recording::behaviour().openLevel = 3;
  das.replies = {readReply("A", "")};
  EXPECT_EQ(import().back(), "log 3 importFromDAS bad XML reply from DataAccessService \"" + readReply("A", "") + "\"");
  recording::behaviour().openLevel = 2;
  das.replies = {readReply("A", "")};
  EXPECT_EQ(import().back(), schemaRequest("A"));
}

TEST_F(ImportFromDAS, KeepsValuesOfAReplyOfTheWrongKind)
{
  load({ItemLine("a").das("A", "C").set("a")});
  das.replies = {unit::replyOf("error_response", "A", "<C>v</C>")};
  EXPECT_THAT(import(), ElementsAre(schemaRequest("A"), R"(set a("v", ""))"));
}

TEST_F(ImportFromDAS, JudgesTheGroupsItTouchedAndForgetsThem)
{
  load({ItemLine("b").das("S", "B").set("b").group("two"), ItemLine("a").das("S", "A").set("a").group("one")});
  das.replies = {readReply("S", "<B>1</B><A>2</A>")};
  const auto lines = import();
  EXPECT_THAT(std::vector<std::string>(lines.begin() + 3, lines.end()),
              ElementsAre(R"(validateGroup("", "one"))", R"(validateGroup("", "two"))", R"(clearGroup("one"))",
                          R"(clearGroup("two"))"));
  EXPECT_THAT(access.groups, IsEmpty());
}

TEST_F(ImportFromDAS, ReportsFailedGroupsWithTheReasonNotEmptiedBetweenThem)
{
  access.groups = {{"a", true}, {"b", true}, {"c", true}};
  validator.groups["a"] = {false, "bad a", {}};
  validator.groups["b"] = {false, "", {}};
  EXPECT_THAT(import(), ElementsAre(R"(validateGroup("", "a"))", "log 2 importFromDAS \"bad a\"  group: a",
                                    R"(validateGroup("bad a", "b"))", "log 2 importFromDAS \"bad a\"  group: b",
                                    R"(validateGroup("bad a", "c"))", R"(clearGroup("a"))", R"(clearGroup("b"))",
                                    R"(clearGroup("c"))"));
  EXPECT_THAT(access.groups, IsEmpty());
}

TEST_F(ImportFromDAS, ForgetsAFailedGroupAsWell)
{
  access.groups = {{"a", true}};
  validator.groups["a"] = {false, "bad", {}};
  EXPECT_EQ(import().back(), R"(clearGroup("a"))");
  EXPECT_THAT(access.groups, IsEmpty());
}

TEST_F(ImportFromDAS, ReportsEveryGroupWithoutAValidator)
{
  manager.setup(&context, &agent, "phone", nullptr);
  access.groups = {{"a", true}};
  EXPECT_THAT(import(), ElementsAre("log 2 importFromDAS \"validation ifc not found\"  group: a"));
  EXPECT_THAT(access.groups, IsEmpty());
}

class ImportItemFromDAS : public ManagerTest
{
protected:
  ImportItemFromDAS()
  {
    load({ItemLine("i").das("S", "Col").index("Idx", "2").set("i").encrypted(), ItemLine("local").set("local")});
  }

  std::vector<std::string> import(const std::string& rootId)
  {
    access.dataAccessIfc();
    return traced([&] { manager.importItemFromDAS(rootId, value); });
  }

  std::string value = "before";
  const std::string request =
      R"(<?xml version="1.0" encoding="utf-8"?><Schema name="S"><ReasonForMessage>read_request</ReasonForMessage>)"
      "<ResultCols>Col</ResultCols></Schema>";
};

TEST_F(ImportItemFromDAS, AnswersTheFirstOccurrenceOfTheColumnAsItStands)
{
  das.replies = {readReply("S", "<Entry><Idx>1</Idx><Col>a&amp;b</Col></Entry>"
                                "<Entry><Idx>2</Idx><Col>second</Col></Entry>")};
  EXPECT_THAT(import("i"), ElementsAre("sendRequest(" + request + ")"));
  EXPECT_EQ(value, "a&amp;b");
}

TEST_F(ImportItemFromDAS, LooksNeitherAtTheKindNorAtTheForm)
{
  das.replies = {"no xml, but Col>here"};
  import("i");
  EXPECT_EQ(value, "here");
}

TEST_F(ImportItemFromDAS, AnswersNothingWhenTheColumnIsAbsent)
{
  das.replies = {readReply("S", "<Other>1</Other>")};
  EXPECT_THAT(import("i"), ElementsAre("sendRequest(" + request + ")"));
  EXPECT_EQ(value, "");
}

TEST_F(ImportItemFromDAS, TracesEachStepAtLevelFour)
{
  recording::behaviour().openLevel = 4;
  das.replies = {"<Col>v</Col>"};
  EXPECT_THAT(import("i"),
              ElementsAre("log 4 importItemFromDAS \"i\" ",
                          "log 4 importItemFromDAS sending request to DataAccessService \"" + request + "\"",
                          "sendRequest(" + request + ")",
                          "log 4 importItemFromDAS reply from DataAccessService \"<Col>v</Col>\"",
                          "log 4 importItemFromDAS stripped reply from DataAccessService \"v\"",
                          "log 4 importItemFromDAS value \"v\""));
}

TEST_F(ImportItemFromDAS, TracesNothingBelowLevelFour)
{
  recording::behaviour().openLevel = 3;
  EXPECT_THAT(import("i"), ElementsAre("sendRequest(" + request + ")"));
}

TEST_F(ImportItemFromDAS, ReportsAnUnknownItem)
{
  EXPECT_THAT(import("nobody"), ElementsAre("log 2 importItemFromDAS unknown item \"nobody\""));
  EXPECT_EQ(value, "");
}

TEST_F(ImportItemFromDAS, TracesTheEmptyValueOfAnUnknownItem)
{
  recording::behaviour().openLevel = 4;
  EXPECT_THAT(import("nobody"),
              ElementsAre("log 2 importItemFromDAS unknown item \"nobody\"", "log 4 importItemFromDAS value \"\""));
}

TEST_F(ImportItemFromDAS, DoesNotKnowLocalItems)
{
  EXPECT_THAT(import("local"), ElementsAre("log 2 importItemFromDAS unknown item \"local\""));
}

TEST_F(ImportItemFromDAS, ReportsAMissingDatabase)
{
  withdraw("DataAccessServiceIfc");
  recording::behaviour().openLevel = 4;
  EXPECT_THAT(traced([&] { manager.importItemFromDAS("i", value); }),
              ElementsAre("log 4 importItemFromDAS \"i\" ", R"(findService("DataAccessServiceIfc"))",
                          "log 2 importItemFromDAS Can't find DataAccessService",
                          "log 4 importItemFromDAS value \"\""));
  EXPECT_EQ(value, "");
}

TEST_F(ImportItemFromDAS, LeavesTheOutputAloneWhenTheReplyEndsWithTheColumnsName)
{
  das.replies = {"<Col"};
  EXPECT_THROW(manager.importItemFromDAS("i", value), std::out_of_range);
  EXPECT_EQ(value, "before");
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
}

TEST_F(ImportItemFromDAS, HoldsTheLockDuringTheExchange)
{
  int depth = 0;
  das.hook = [&] { depth = recording::behaviour().lockDepth; };
  import("i");
  EXPECT_EQ(depth, 1);
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
}

TEST_F(ImportItemFromDAS, KnowsNothingBeforeAMapIsLoaded)
{
  manager.clearAllManagedData();
  EXPECT_THAT(import("i"), ElementsAre("log 2 importItemFromDAS unknown item \"i\""));
}

} // namespace
