// One update request a schema: what goes in, and what becomes of it.
#include <ctime>

#include "ManagerTest.h"

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using unit::ItemLine;
using unit::ManagerTest;
using unit::replyOf;
using unit::updateReply;
using SetDataBlob = ServiceDataManager::SetDataBlob;
using Requests = std::map<std::string, std::string>;

std::string begin(const std::string& schema)
{
  return R"(<?xml version="1.0" encoding="utf-8"?><Schema name=")" + schema +
         R"("><ReasonForMessage>update_request</ReasonForMessage>)";
}

class UpdateRequests : public ManagerTest
{
protected:
  SetDataBlob blob(const std::string& rootId, const std::string& value, bool validated, const std::string& reason = "")
  {
    SetDataBlob made(rootId, value, &item(rootId));
    made.validated = validated;
    made.reason = reason;
    return made;
  }
};

class PopulateDasRequestMap : public UpdateRequests
{
};

TEST_F(PopulateDasRequestMap, GathersTheCellsOfASchemaInOneRequest)
{
  load({ItemLine("b").das("S", "B"), ItemLine("a").das("S", "A"), ItemLine("r").das("S", "R").index("I", "2")});
  EXPECT_THAT(access.populateDasRequestMapWith(
                  {blob("b", "1", true), blob("a", "2", true), blob("r", "3", true), blob("b", "4", true)}),
              ElementsAre(Pair("S", begin("S") + "<B>1</B><A>2</A><Entry><I>2</I><R>3</R></Entry><B>4</B>")));
}

TEST_F(PopulateDasRequestMap, TakesASchemaWithALongName)
{
  const std::string schema(1000, 'S');
  load({ItemLine("i").das("S", "C")});
  item("i").dasSchema = schema;
  EXPECT_THAT(access.populateDasRequestMapWith({blob("i", "1", true)}),
              ElementsAre(Pair(schema, begin(schema) + "<C>1</C>")));
}

TEST_F(PopulateDasRequestMap, KeepsSchemasApart)
{
  load({ItemLine("z").das("Z", "C"), ItemLine("a").das("A", "C")});
  EXPECT_THAT(access.populateDasRequestMapWith({blob("z", "1", true), blob("a", "2", true)}),
              ElementsAre(Pair("A", begin("A") + "<C>2</C>"), Pair("Z", begin("Z") + "<C>1</C>")));
}

TEST_F(PopulateDasRequestMap, SkipsRecordsWithoutItemOrColumn)
{
  load({ItemLine("i").das("S", "")});
  SetDataBlob unknown("nobody", "v", nullptr);
  unknown.validated = true;
  EXPECT_THAT(access.populateDasRequestMapWith({unknown, blob("i", "v", true)}), IsEmpty());
}

TEST_F(PopulateDasRequestMap, GathersTheCellsBehindAnUnknownItem)
{
  load({ItemLine("a").das("S", "A")});
  EXPECT_THAT(access.populateDasRequestMapWith({SetDataBlob("nobody", "v", nullptr), blob("a", "1", true)}),
              ElementsAre(Pair("S", begin("S") + "<A>1</A>")));
}

TEST_F(PopulateDasRequestMap, EntersAColumnWithoutSchemaUnderTheEmptyName)
{
  load({ItemLine("i").das("", "C")});
  EXPECT_THAT(access.populateDasRequestMapWith({blob("i", "v", true)}), ElementsAre(Pair("", begin("") + "<C>v</C>")));
}

TEST_F(PopulateDasRequestMap, WritesAnUnchangedValueAgainButNoOtherRefusal)
{
  load({ItemLine("i").das("S", "C")});
  EXPECT_THAT(access.populateDasRequestMapWith({blob("i", "v", false, "NOT_CHANGED at all")}),
              ElementsAre(Pair("S", begin("S") + "<C>v</C>")));
  EXPECT_THAT(access.populateDasRequestMapWith({blob("i", "v", false, "was NOT_CHANGED")}), IsEmpty());
  EXPECT_THAT(access.populateDasRequestMapWith({blob("i", "v", false, "")}), IsEmpty());
  EXPECT_THAT(access.populateDasRequestMapWith({blob("i", "v", false, "UNCHANGED_DATA")}), IsEmpty());
}

TEST_F(PopulateDasRequestMap, OnlyFlagsTheGroupOfAGroupedItem)
{
  load({ItemLine("i").das("S", "C").group("g"), ItemLine("j").das("S", "").group("h")});
  EXPECT_THAT(access.populateDasRequestMapWith({blob("i", "v", true), blob("j", "v", true)}), IsEmpty());
  EXPECT_EQ(access.groups, (std::map<std::string, bool>{{"g", true}, {"h", true}}));
}

TEST_F(PopulateDasRequestMap, LetsTheLastRecordOfAGroupDecide)
{
  load({ItemLine("a").das("S", "A").group("g"), ItemLine("b").das("S", "B").group("g")});
  access.populateDasRequestMapWith({blob("a", "1", true), blob("b", "2", false, "no")});
  EXPECT_THAT(access.groups, IsEmpty());
  access.populateDasRequestMapWith({blob("a", "1", false, "no"), blob("b", "2", true)});
  EXPECT_EQ(access.groups.count("g"), 1U);
}

TEST_F(PopulateDasRequestMap, KeepsAGroupFlaggedOnlyForReasonsThatBeginWithNotChanged)
{
  load({ItemLine("a").das("S", "A").group("g")});
  access.populateDasRequestMapWith({blob("a", "1", false, "NOT_CHANGED.")});
  EXPECT_EQ(access.groups.count("g"), 1U);
  access.populateDasRequestMapWith({blob("a", "1", false, "it is NOT_CHANGED")});
  EXPECT_EQ(access.groups.count("g"), 0U);
}

TEST_F(PopulateDasRequestMap, TracesTheGroupOfARefusedItemToo)
{
  load({ItemLine("a").das("S", "A").group("g")});
  recording::behaviour().openLevel = 6;
  const std::string line = "log 5 Add group \"g\" and flag it for validation";
  EXPECT_THAT(traced(
                  [&] {
                    access.populateDasRequestMapWith({blob("a", "1", false, "no"), blob("a", "2", false, "no")});
                  }),
              ElementsAre(line, line));
  EXPECT_THAT(access.groups, IsEmpty());
}

class AddDASItemEntry : public UpdateRequests
{
protected:
  Requests requests;
};

TEST_F(AddDASItemEntry, EscapesPlainValues)
{
  load({ItemLine("i").das("S", "C")});
  access.addDASItemEntry(requests, &item("i"), "a<b&\"c'>");
  EXPECT_THAT(requests, ElementsAre(Pair("S", begin("S") + "<C>a&lt;b&amp;&quot;c&apos;&gt;</C>")));
}

TEST_F(AddDASItemEntry, EncryptsEncryptedValuesAndEscapesThemNoFurther)
{
  load({ItemLine("i").das("S", "C").encrypted()});
  access.addDASItemEntry(requests, &item("i"), "p&ss");
  EXPECT_THAT(requests, ElementsAre(Pair("S", begin("S") + "<C>" + recording::encrypted("p&ss") + "</C>")));
}

TEST_F(AddDASItemEntry, SendsWhatAFailedEncryptionLeaves)
{
  load({ItemLine("i").das("S", "C").encrypted()});
  recording::behaviour().encryptionFails = true;
  access.addDASItemEntry(requests, &item("i"), "secret");
  EXPECT_THAT(requests, ElementsAre(Pair("S", begin("S") + "<C></C>")));
}

TEST_F(AddDASItemEntry, TracesTheCellGroupWhileLevelSixIsOpen)
{
  load({ItemLine("i").das("S", "C").index("I", "2")});
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(traced([&] { access.addDASItemEntry(requests, &item("i"), "v"); }),
              ElementsAre("log 6 addDASItemEntry:'<Entry><I>2</I><C>v</C></Entry>'\n"));
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(traced([&] { access.addDASItemEntry(requests, &item("i"), "v"); }), IsEmpty());
}

TEST_F(AddDASItemEntry, LeavesARecordForSensitiveSchemasOnly)
{
  load({ItemLine("i").das("Snmp", "C").encrypted(), ItemLine("j").das("Transport", "D"), ItemLine("k").das("S", "C")});
  access.addDASItemEntry(requests, &item("i"), "secret");
  access.addDASItemEntry(requests, &item("j"), "open");
  access.addDASItemEntry(requests, &item("k"), "free");
  EXPECT_THAT(access.pendingRecords, ElementsAre("Snmp set C(***)", "Transport set D(open)"));
}

TEST_F(AddDASItemEntry, RecordsTheValueAndNotItsCell)
{
  load({ItemLine("i").das("Snmp", "C")});
  access.addDASItemEntry(requests, &item("i"), "a<b");
  EXPECT_THAT(access.pendingRecords, ElementsAre("Snmp set C(a&lt;b)")) << "escaped once, by the record itself";
}

class SingleValidGroup : public UpdateRequests
{
protected:
  SingleValidGroup()
  {
    load({ItemLine("a").das("S", "A"), ItemLine("b").das("S", "")});
    validator.groups["g"].items = {{"a", "1"}, {"gone", "2"}, {"b", "3"}};
  }

  Requests requests;
};

TEST_F(SingleValidGroup, AddsTheAcceptedItemsAndReportsUnknownOnes)
{
  EXPECT_THAT(traced([&] { access.updateDasRequestSingleValidGroup(requests, "g"); }),
              ElementsAre(R"(getValidGroupItems("g"))", "log 2 gone is NULL\n"));
  EXPECT_THAT(requests, ElementsAre(Pair("S", begin("S") + "<A>1</A>")));
}

TEST_F(SingleValidGroup, TracesEachItemMaskedAtLevelSix)
{
  recording::behaviour().openLevel = 6;
  recording::behaviour().secret = "a";
  EXPECT_THAT(traced([&] { access.updateDasRequestSingleValidGroup(requests, "g"); }),
              ElementsAre(R"(getValidGroupItems("g"))", "log 6 found 3 valid items",
                          "log 6 \"A\" = \"***\", das item name found", "log 6 addDASItemEntry:'<A>1</A>'\n",
                          "log 2 gone is NULL\n", "log 6 \"\" = \"3\", das item name NOT found"));
}

TEST_F(SingleValidGroup, AddsNothingForItemsWithoutAColumn)
{
  validator.groups["g"].items = {{"b", "3"}};
  access.updateDasRequestSingleValidGroup(requests, "g");
  EXPECT_THAT(requests, IsEmpty());
}

TEST_F(SingleValidGroup, AddsNothingWithoutAValidator)
{
  manager.setup(&context, &agent, "phone", nullptr);
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(traced([&] { access.updateDasRequestSingleValidGroup(requests, "g"); }), IsEmpty());
  EXPECT_THAT(requests, IsEmpty());
}

class SendDASRequests : public UpdateRequests
{
protected:
  SendDASRequests()
  {
    das.fallback = [](const std::string&) { return updateReply(); };
  }

  std::vector<std::string> send(Requests requests, DataAccessServiceIfc* service)
  {
    return traced([&] { sent = access.sendDASRequests(requests, service); });
  }

  static std::string event(const std::string& outcome, const std::string& record)
  {
    return "logSecurityEvent(4, 1, 5, 3, " + outcome + ", \"" + record + R"(", "", ""))";
  }

  bool sent = false;
};

TEST_F(SendDASRequests, ClosesAndSendsEachSchemaInOrder)
{
  EXPECT_THAT(send({{"B", "<b>"}, {"A", "<a>"}}, &das),
              ElementsAre("sendRequest(<a></Schema>)", "sendRequest(<b></Schema>)"));
  EXPECT_TRUE(sent);
}

TEST_F(SendDASRequests, TracesRequestAndReplyAtLevelFive)
{
  recording::behaviour().openLevel = 5;
  das.replies = {updateReply()};
  EXPECT_THAT(send({{"A", "<a>"}}, &das),
              ElementsAre("log 5 sendDASRequests", "log 5 sendDASRequests sending request \"<a></Schema>\"",
                          "sendRequest(<a></Schema>)", "log 5 parseXMLDasReply \"" + updateReply() + "\"",
                          "log 5 sendDASRequests received reply \"" + updateReply() + "\""));
}

TEST_F(SendDASRequests, ReportsABadReplyBeforeTracingIt)
{
  const std::string bad = replyOf("error_response", "A", "");
  das.replies = {bad};
  EXPECT_THAT(send({{"A", "<a>"}}, &das),
              ElementsAre("sendRequest(<a></Schema>)",
                          "log 2 sendDASRequests bad XML reply from DataAccessService \"" + bad + "\""));
  EXPECT_FALSE(sent);
  recording::behaviour().openLevel = 5;
  das.replies = {bad};
  const auto lines = send({{"A", "<a>"}}, &das);
  EXPECT_EQ(lines[4], "log 2 sendDASRequests bad XML reply from DataAccessService \"" + bad + "\"");
  EXPECT_EQ(lines[5], "log 5 sendDASRequests received reply \"" + bad + "\"");
}

TEST_F(SendDASRequests, RemembersOnlyTheLastOutcome)
{
  das.replies = {"<bad", updateReply()};
  EXPECT_EQ(send({{"A", "<a>"}, {"B", "<b>"}}, &das).size(), 4U);
  EXPECT_TRUE(sent);
  das.replies = {updateReply(), "<bad"};
  send({{"A", "<a>"}, {"B", "<b>"}}, &das);
  EXPECT_FALSE(sent);
}

TEST_F(SendDASRequests, AppliesNoColumnOfAReply)
{
  load({ItemLine("i").das("S", "C").set("i")});
  das.replies = {replyOf("update_response", "S", "<C>v</C>")};
  EXPECT_THAT(send({{"S", "<s>"}}, &das), ElementsAre("sendRequest(<s></Schema>)"));
}

TEST_F(SendDASRequests, SendsNothingAndKeepsTheRecordsWithoutADatabase)
{
  access.pendingRecords = {"one"};
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(send({{"A", "<a>"}}, nullptr), ElementsAre("log 5 sendDASRequests"));
  EXPECT_FALSE(sent);
  EXPECT_THAT(access.pendingRecords, ElementsAre("one"));
}

TEST_F(SendDASRequests, FailsWithoutADatabaseEvenWhenThereIsNothingToSend)
{
  access.pendingRecords = {"one"};
  EXPECT_THAT(send({}, nullptr), IsEmpty());
  EXPECT_FALSE(sent);
  EXPECT_THAT(access.pendingRecords, ElementsAre("one"));
}

TEST_F(SendDASRequests, HandsTheRecordsOverWithTheOutcomeAndOneTime)
{
  access.pendingRecords = {"one", "two"};
  const time_t before = std::time(nullptr);
  EXPECT_THAT(send({{"A", "<a>"}}, &das),
              ElementsAre("sendRequest(<a></Schema>)", R"(findService("SecurityLogServiceIfc"))", event("done", "one"),
                          event("done", "two")));
  EXPECT_GE(securityLog.lastTime, before);
  EXPECT_LE(securityLog.lastTime, std::time(nullptr));
  EXPECT_THAT(access.pendingRecords, IsEmpty());
}

TEST_F(SendDASRequests, TellsTheSecurityLogThatTheWriteFailed)
{
  access.pendingRecords = {"one"};
  das.replies = {"<bad"};
  EXPECT_EQ(send({{"A", "<a>"}}, &das).back(), event("failed", "one"));
}

TEST_F(SendDASRequests, FlushesLeftOverRecordsAsFailedWhenThereIsNothingToSend)
{
  access.pendingRecords = {"left over"};
  EXPECT_THAT(send({}, &das), ElementsAre(R"(findService("SecurityLogServiceIfc"))", event("failed", "left over")));
  EXPECT_TRUE(sent);
  EXPECT_THAT(access.pendingRecords, IsEmpty());
}

TEST_F(SendDASRequests, KeepsTheRecordsUntilASecurityLogIsThere)
{
  withdraw("SecurityLogServiceIfc");
  access.pendingRecords = {"one"};
  EXPECT_THAT(send({}, &das), ElementsAre(R"(findService("SecurityLogServiceIfc"))"));
  EXPECT_TRUE(sent);
  EXPECT_THAT(access.pendingRecords, ElementsAre("one"));
  context.services["SecurityLogServiceIfc"] = &das;
  EXPECT_THAT(send({}, &das), ElementsAre(R"(findService("SecurityLogServiceIfc"))"));
  context.services["SecurityLogServiceIfc"] = &securityLog;
  EXPECT_EQ(send({}, &das).back(), event("failed", "one"));
  access.pendingRecords = {"two"};
  EXPECT_THAT(send({}, &das), ElementsAre(event("failed", "two"))) << "found once, kept for good";
}

TEST_F(SendDASRequests, KeepsTheRecordsWithoutAContext)
{
  manager.setup(nullptr, &agent, "phone", &validator);
  access.pendingRecords = {"one"};
  EXPECT_THAT(send({}, &das), IsEmpty());
  EXPECT_THAT(access.pendingRecords, ElementsAre("one"));
}

TEST_F(SendDASRequests, AsksForNoSecurityLogWithoutRecords)
{
  EXPECT_THAT(send({}, &das), IsEmpty());
  EXPECT_TRUE(sent);
}

TEST_F(SendDASRequests, KeepsARecordThatComesDuringAHandOverForTheNextOne)
{
  access.pendingRecords = {"first", "second"};
  securityLog.hook = [&]
  {
    securityLog.hook = nullptr;
    access.pendingRecords.push_back("third");
  };
  EXPECT_THAT(send({{"A", "<a>"}}, &das), ::testing::Not(::testing::Contains(event("done", "third"))));
  EXPECT_THAT(access.pendingRecords, ElementsAre("third"));
}

TEST_F(SendDASRequests, HandsOverRecordsThatAreNoLongerPending)
{
  access.pendingRecords = {"first"};
  securityLog.hook = [&] { EXPECT_THAT(access.pendingRecords, IsEmpty()); };
  send({{"A", "<a>"}}, &das);
}

} // namespace
