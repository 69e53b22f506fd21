// Answering set requests.
#include <stdexcept>

#include "ManagerTest.h"

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;
using unit::updateReply;
using SetDataBlob = ServiceDataManager::SetDataBlob;

class SetPath : public ManagerTest
{
protected:
  using Values = std::vector<std::pair<std::string, std::string>>;

  std::vector<std::string> set(const Values& values)
  {
    data = request(values);
    return run();
  }

  std::vector<std::string> run()
  {
    access.dataAccessIfc();
    return traced([&] { done = manager.setData(*data); });
  }

  void refuse(const std::string& name, const std::string& reason)
  {
    setter(name).accepts = false;
    setter(name).remark = reason;
  }

  std::vector<std::string> rejects() const
  {
    return recording::rejectReasons(*data);
  }

  static std::string requestText(const std::string& schema, const std::string& cells)
  {
    return R"(<?xml version="1.0" encoding="utf-8"?><Schema name=")" + schema +
           R"("><ReasonForMessage>update_request</ReasonForMessage>)" + cells + "</Schema>";
  }

  static std::string sent(const std::string& schema, const std::string& cells)
  {
    return "sendRequest(" + requestText(schema, cells) + ")";
  }

  std::unique_ptr<ManageableData> data;
  bool done = false;
};

TEST_F(SetPath, SetsThenWritesEachSchemaOnce)
{
  load({ItemLine("b").das("T", "B").set("b"), ItemLine("a").das("S", "A").index("I", "2").set("a"),
        ItemLine("c").das("T", "C").set("c")});
  EXPECT_THAT(set({{"b", "1"}, {"a", "2"}, {"c", "3"}}),
              ElementsAre(R"(set b("1", ""))", R"(set a("2", "2"))", R"(set c("3", ""))",
                          sent("S", "<Entry><I>2</I><A>2</A></Entry>"), sent("T", "<B>1</B><C>3</C>")));
  EXPECT_TRUE(done);
  EXPECT_THAT(rejects(), IsEmpty());
}

TEST_F(SetPath, RunsThroughAllStepsInOrder)
{
  load({ItemLine("a").das("Snmp", "A").set("a"), ItemLine("g").das("S", "G").set("g").group("grp")});
  validator.groups["grp"].items = {{"g", "2"}};
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(set({{"a", "1"}, {"g", "2"}}),
              ElementsAre("log 5 setData 2\n", "log 4 trySetData \"a\" = \"1\"", R"(set a("1", ""))",
                          "log 5 setData \"a\" = \"1\", validated=\"true\" \"\"", "log 4 trySetData \"g\" = \"2\"",
                          R"(set g("2", ""))", "log 5 setData \"g\" = \"2\", validated=\"true\" \"\"",
                          "log 6 addDASItemEntry:'<A>1</A>'\n", "log 5 Add group \"grp\" and flag it for validation",
                          "log 6 checking group grp", R"(validateGroup("", "grp"))", R"(getValidGroupItems("grp"))",
                          "log 6 found 1 valid items", "log 6 \"G\" = \"2\", das item name found",
                          "log 6 addDASItemEntry:'<G>2</G>'\n", R"(clearGroup("grp"))", "log 5 sendDASRequests",
                          "log 5 sendDASRequests sending request \"" + requestText("S", "<G>2</G>") + "\"",
                          sent("S", "<G>2</G>"), ::testing::StartsWith("log 5 parseXMLDasReply"),
                          ::testing::StartsWith("log 5 sendDASRequests received reply"),
                          ::testing::StartsWith("log 5 sendDASRequests sending request"), sent("Snmp", "<A>1</A>"),
                          ::testing::StartsWith("log 5 parseXMLDasReply"),
                          ::testing::StartsWith("log 5 sendDASRequests received reply"),
                          R"(findService("SecurityLogServiceIfc"))",
                          "logSecurityEvent(4, 1, 5, 3, done, \"Snmp set A(1)\", \"\", \"\")"));
  EXPECT_TRUE(done);
}

TEST_F(SetPath, CallsNothingForARequestWithoutRootIds)
{
  EXPECT_THAT(set({}), IsEmpty());
  EXPECT_TRUE(done);
}

TEST_F(SetPath, JudgesGroupsThatWereStillFlaggedEvenWithoutRootIds)
{
  access.groups = {{"g", true}};
  validator.groups["g"] = {false, "bad", {}};
  EXPECT_THAT(set({}), ElementsAre(R"(validateGroup("", "g"))", "log 2 setData failed because \"bad\" for group: \"g\"",
                                   R"(clearGroup("g"))"));
  EXPECT_FALSE(done);
  EXPECT_THAT(rejects(), ElementsAre("|/|bad"));
}

TEST_F(SetPath, RefusesUnknownItems)
{
  load({ItemLine("local").set("local")});
  recording::behaviour().openLevel = 4;
  EXPECT_THAT(set({{"nobody", "1"}, {"local", "2"}}), ElementsAre("log 4 trySetData \"unknown item\" \"nobody\"",
                                                                  "log 4 trySetData \"unknown item\" \"local\""));
  EXPECT_FALSE(done);
  EXPECT_THAT(rejects(), ElementsAre("nobody|nobody|unknown item", "local|local|unknown item"));
}

TEST_F(SetPath, RefusesItemsWithoutSetter)
{
  load({ItemLine("i").das("S", "C")});
  recording::behaviour().openLevel = 5;
  const auto lines = set({{"i", "1"}});
  EXPECT_EQ(lines[2], "log 5 setData \"i\" = \"1\", validated=\"false\" \"no setter available\"");
  EXPECT_FALSE(done);
  EXPECT_THAT(rejects(), ElementsAre("i|i|no setter available"));
}

TEST_F(SetPath, ReportsARefusalAndStillWritesTheOthers)
{
  load({ItemLine("a").das("S", "A").set("a"), ItemLine("b").das("S", "B").set("b")});
  refuse("a", "too loud");
  EXPECT_THAT(set({{"a", "1"}, {"b", "2"}}),
              ElementsAre(R"(set a("1", ""))", R"(set b("2", ""))", sent("S", "<B>2</B>")));
  EXPECT_FALSE(done);
  EXPECT_THAT(rejects(), ElementsAre("a|a|too loud"));
}

TEST_F(SetPath, TracesARefusalMasked)
{
  load({ItemLine("pin").das("S", "A").set("pin")});
  refuse("pin", "too short");
  recording::behaviour().secret = "pin";
  recording::behaviour().openLevel = 5;
  const auto lines = set({{"pin", "1"}});
  EXPECT_EQ(lines[1], "log 4 trySetData \"pin\" = \"***\"");
  EXPECT_EQ(lines[3], "log 5 setData \"pin\" = \"***\", validated=\"false\" \"too short\"");
}

TEST_F(SetPath, MasksAndFormatsNothingWhileTheGateIsClosed)
{
  load({ItemLine("a").das("S", "A").set("a")});
  recording::behaviour().openLevel = 3;
  set({{"a", "1"}});
  EXPECT_EQ(recording::behaviour().hidePasswordCalls, 0);
}

TEST_F(SetPath, HandsEverySetterAnEmptyErrorText)
{
  load({ItemLine("a").das("S", "A").set("a")});
  setter("a").errorOnEntry = "x";
  set({{"a", "1"}});
  EXPECT_EQ(setter("a").errorOnEntry, "");
}

TEST_F(SetPath, ForgetsAnErrorTextOfBefore)
{
  load({ItemLine("a").das("S", "A").set("a")});
  std::string error = "before";
  EXPECT_TRUE(access.setData(&item("a"), "1", error));
  EXPECT_EQ(setter("a").errorOnEntry, "");
  EXPECT_EQ(error, "");
}

TEST_F(SetPath, WritesARefusedUnchangedValueAndReportsIt)
{
  load({ItemLine("a").das("S", "A").set("a")});
  refuse("a", "NOT_CHANGED");
  EXPECT_THAT(set({{"a", "1"}}), ElementsAre(R"(set a("1", ""))", sent("S", "<A>1</A>")));
  EXPECT_FALSE(done);
  EXPECT_THAT(rejects(), ElementsAre("a|a|NOT_CHANGED"));
}

TEST_F(SetPath, ReportsUnchangedDataOfAnAcceptedValueAndStillSucceeds)
{
  load({ItemLine("a").das("S", "A").set("a")});
  setter("a").remark = "UNCHANGED_DATA";
  EXPECT_THAT(set({{"a", "1"}}), ElementsAre(R"(set a("1", ""))", sent("S", "<A>1</A>")));
  EXPECT_TRUE(done);
  EXPECT_THAT(rejects(), ElementsAre("a|a|UNCHANGED_DATA"));
}

TEST_F(SetPath, FailsWhenARejectOnlyBeginsWithUnchangedData)
{
  load({ItemLine("a").das("S", "A").set("a")});
  setter("a").remark = "UNCHANGED_DATA here";
  set({{"a", "1"}});
  EXPECT_FALSE(done);
  EXPECT_THAT(rejects(), ElementsAre("a|a|UNCHANGED_DATA here"));
}

TEST_F(SetPath, IgnoresOtherRemarksOfAcceptedValues)
{
  load({ItemLine("a").das("S", "A").set("a")});
  setter("a").remark = "was UNCHANGED_DATA before";
  set({{"a", "1"}});
  EXPECT_TRUE(done);
  EXPECT_THAT(rejects(), IsEmpty());
}

TEST_F(SetPath, TriesARepeatedRootIdTwice)
{
  load({ItemLine("a").das("S", "A").set("a")});
  data = request({{"a", "1"}});
  recording::repeatRootId(*data, "a");
  EXPECT_THAT(run(), ElementsAre(R"(set a("1", ""))", R"(set a("1", ""))", sent("S", "<A>1</A><A>1</A>")));
}

TEST_F(SetPath, WritesTheAcceptedItemsOfAValidGroup)
{
  load({ItemLine("a").das("S", "A").set("a").group("g"), ItemLine("b").das("S", "B").set("b")});
  validator.groups["g"].items = {{"a", "from the validator"}};
  EXPECT_THAT(set({{"a", "1"}, {"b", "2"}}),
              ElementsAre(R"(set a("1", ""))", R"(set b("2", ""))", R"(validateGroup("", "g"))",
                          R"(getValidGroupItems("g"))", R"(clearGroup("g"))",
                          sent("S", "<B>2</B><A>from the validator</A>")));
  EXPECT_TRUE(done);
  EXPECT_THAT(access.groups, IsEmpty());
}

TEST_F(SetPath, RejectsAFailedGroupBeforeItemsAndWritesNoneOfIt)
{
  load({ItemLine("a").das("S", "A").set("a").group("g"), ItemLine("b").das("S", "B").set("b")});
  refuse("b", "no");
  validator.groups["g"] = {false, "does not fit", {{"a", "1"}}};
  EXPECT_THAT(set({{"a", "1"}, {"b", "2"}}),
              ElementsAre(R"(set a("1", ""))", R"(set b("2", ""))", R"(validateGroup("", "g"))",
                          "log 2 setData failed because \"does not fit\" for group: \"g\"", R"(clearGroup("g"))"));
  EXPECT_FALSE(done);
  EXPECT_THAT(rejects(), ElementsAre("|/|does not fit", "b|b|no"));
}

TEST_F(SetPath, RejectsAFailedGroupBehindAValidOne)
{
  load({ItemLine("a").das("S", "A").set("a").group("g"), ItemLine("b").das("S", "B").set("b").group("h")});
  validator.groups["h"] = {false, "does not fit", {}};
  set({{"a", "1"}, {"b", "2"}});
  EXPECT_FALSE(done);
  EXPECT_THAT(rejects(), ElementsAre("|/|does not fit"));
}

TEST_F(SetPath, RejectsEveryGroupWithoutAValidator)
{
  manager.setup(&context, &agent, "phone", nullptr);
  load({ItemLine("a").das("S", "A").set("a").group("g"), ItemLine("b").das("S", "B").set("b").group("h")});
  set({{"a", "1"}, {"b", "2"}});
  EXPECT_FALSE(done);
  EXPECT_THAT(rejects(), ElementsAre("|/|validation ifc not found", "|/|validation ifc not found"));
}

TEST_F(SetPath, JudgesNoGroupWhoseLastItemWasRefused)
{
  load({ItemLine("a").das("S", "A").set("a").group("g"), ItemLine("b").das("S", "B").set("b").group("g")});
  refuse("b", "no");
  EXPECT_THAT(set({{"a", "1"}, {"b", "2"}}), ElementsAre(R"(set a("1", ""))", R"(set b("2", ""))"));
  EXPECT_THAT(set({{"b", "2"}, {"a", "1"}}),
              ElementsAre(R"(set b("2", ""))", R"(set a("1", ""))", R"(validateGroup("", "g"))",
                          R"(getValidGroupItems("g"))", R"(clearGroup("g"))"));
}

TEST_F(SetPath, FailsWithoutADatabaseAfterAllRejectsAreIn)
{
  withdraw("DataAccessServiceIfc");
  load({ItemLine("a").das("S", "A").set("a"), ItemLine("b").das("S", "B").set("b")});
  refuse("b", "no");
  EXPECT_THAT(set({{"a", "1"}, {"b", "2"}}),
              ElementsAre(R"(set a("1", ""))", R"(set b("2", ""))", R"(findService("DataAccessServiceIfc"))"));
  EXPECT_FALSE(done);
  EXPECT_THAT(rejects(), ElementsAre("b|b|no"));
}

TEST_F(SetPath, FailsWhenTheDatabaseRefusesAlthoughNothingWasRejected)
{
  load({ItemLine("a").das("S", "A").set("a")});
  das.replies = {unit::replyOf("error_response", "S", "")};
  set({{"a", "1"}});
  EXPECT_FALSE(done);
  EXPECT_THAT(rejects(), IsEmpty());
}

TEST_F(SetPath, DropsLeftOverSecurityRecordsFirst)
{
  access.pendingRecords = {"left over"};
  load({ItemLine("a").das("Snmp", "A").set("a")});
  std::size_t atFirstSetter = 99;
  setter("a").hook = [&] { atFirstSetter = access.pendingRecords.size(); };
  set({{"a", "1"}});
  EXPECT_EQ(atFirstSetter, 0U);
  EXPECT_EQ(recording::traceOf("logSecurityEvent").size(), 1U);
}

TEST_F(SetPath, DropsLeftOverSecurityRecordsEvenWhenTheRequestCannotBeRead)
{
  access.pendingRecords = {"left over"};
  data = request({});
  recording::behaviour().everyCall = [](const std::string& name)
  {
    if (name == "getRootIds")
      throw std::runtime_error("request");
  };
  EXPECT_THROW(run(), std::runtime_error);
  recording::behaviour().everyCall = nullptr;
  EXPECT_THAT(traced([&] { manager.reloadUserData(); }), IsEmpty()) << "it would hand over what is left";
}

TEST_F(SetPath, HoldsTheLockDuringEveryCall)
{
  load({ItemLine("a").das("Snmp", "A").set("a"), ItemLine("b").das("Snmp", "B").set("b").group("g")});
  std::vector<int> depths;
  const recording::Hook noteDepth = [&] { depths.push_back(recording::behaviour().lockDepth); };
  setter("a").hook = noteDepth;
  validator.hook = noteDepth;
  das.hook = noteDepth;
  securityLog.hook = noteDepth;
  set({{"a", "1"}, {"b", "2"}});
  EXPECT_THAT(depths, ElementsAre(1, 1, 1, 1, 1, 1));
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
}

TEST_F(SetPath, MakesOneRecordARootId)
{
  load({ItemLine("a").das("S", "A")});
  data = request({{"a", "1"}});
  data->addRootId("empty", nullptr);
  const std::vector<SetDataBlob> blobs = access.convertManageableDataToLocal(*data);
  ASSERT_EQ(blobs.size(), 2U);
  EXPECT_EQ(blobs[0].rootId, "a");
  EXPECT_EQ(blobs[0].value, "1");
  EXPECT_EQ(blobs[0].item, &item("a"));
  EXPECT_FALSE(blobs[0].validated);
  EXPECT_EQ(blobs[1].rootId, "empty");
  EXPECT_EQ(blobs[1].value, "");
  EXPECT_EQ(blobs[1].item, nullptr);
}

TEST_F(SetPath, ReadsEachValueIntoAnEmptyText)
{
  data = request({{"a", "1"}, {"b", "2"}});
  recording::behaviour().traceRecords = true;
  EXPECT_THAT(traced([&] { access.convertManageableDataToLocal(*data); }),
              ElementsAre("interogate(a, a)", "interogate(b, b)"));
}

TEST_F(SetPath, AsksForTheReasonsOfRejectsOnlyWhenThereAreAny)
{
  std::vector<std::string> calls;
  recording::behaviour().everyCall = [&](const std::string& name) { calls.push_back(name); };
  ManageableData rejects;
  access.isSetOperationSuccessful(true, rejects);
  EXPECT_THAT(calls, ElementsAre("isRejectListEmpty"));
  rejects.addRejectReason("a", "a", "UNCHANGED_DATA");
  calls.clear();
  access.isSetOperationSuccessful(true, rejects);
  EXPECT_THAT(calls, ElementsAre("isRejectListEmpty", "areAllRejectReasons"));
  calls.clear();
  access.isSetOperationSuccessful(false, rejects);
  EXPECT_THAT(calls, IsEmpty());
  recording::behaviour().everyCall = nullptr;
}

TEST_F(SetPath, FailsWithoutADatabaseEvenWhenNothingIsToBeWritten)
{
  withdraw("DataAccessServiceIfc");
  load({ItemLine("a").das("S", "").set("a")});
  EXPECT_THAT(set({{"a", "1"}}), ElementsAre(R"(set a("1", ""))", R"(findService("DataAccessServiceIfc"))"));
  EXPECT_FALSE(done);
  EXPECT_THAT(rejects(), IsEmpty());
}

TEST_F(SetPath, DecidesTheResultFromDatabaseAndRejects)
{
  ManageableData none;
  EXPECT_TRUE(access.isSetOperationSuccessful(true, none));
  EXPECT_FALSE(access.isSetOperationSuccessful(false, none));
  ManageableData unchanged;
  unchanged.addRejectReason("a", "a", "UNCHANGED_DATA");
  EXPECT_TRUE(access.isSetOperationSuccessful(true, unchanged));
  EXPECT_FALSE(access.isSetOperationSuccessful(false, unchanged));
  unchanged.addRejectReason("b", "b", "no");
  EXPECT_FALSE(access.isSetOperationSuccessful(true, unchanged));
}

TEST_F(SetPath, HasAllRejectReasonsInTheRequestBeforeItSends)
{
  load({ItemLine("a").das("S", "A").set("a"), ItemLine("b").das("S", "B").set("b"),
        ItemLine("g").das("S", "G").set("g").group("grp")});
  refuse("b", "bad value");
  validator.groups["grp"] = {false, "bad group", {}};
  std::vector<std::string> whileSending;
  das.hook = [&] { whileSending = rejects(); };
  set({{"a", "1"}, {"b", "2"}, {"g", "3"}});
  EXPECT_THAT(whileSending, ElementsAre("|/|bad group", "b|b|bad value"));
}

TEST_F(SetPath, KeepsTheRejectReasonsWhenTheDatabaseThrows)
{
  load({ItemLine("a").das("S", "A").set("a"), ItemLine("b").das("S", "B").set("b")});
  refuse("b", "bad value");
  das.hook = [] { throw std::runtime_error("database"); };
  EXPECT_THROW(set({{"a", "1"}, {"b", "2"}}), std::runtime_error);
  EXPECT_THAT(rejects(), ElementsAre("b|b|bad value"));
}

} // namespace
