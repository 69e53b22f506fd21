// Putting user data back to its defaults.
#include <stdexcept>

#include "ManagerTest.h"

namespace
{

using unit::ElementsAre;
using unit::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;
using unit::readReply;
using unit::updateReply;

std::string updateOf(const std::string& schema, const std::string& content)
{
  return R"(sendRequest(<?xml version="1.0" encoding="utf-8"?><Schema name=")" + schema +
         R"("><ReasonForMessage>update_request</ReasonForMessage>)" + content + "</Schema>)";
}

/// A store that names the first candidate once more, as one with another kind of record might.
class RepeatingStore : public recording::Store
{
public:
  bool checkData(ManageableData& data, void* checkContext) override
  {
    std::vector<std::string> rootIds;
    data.getRootIds(rootIds);
    recording::repeatRootId(data, rootIds.front());
    return Store::checkData(data, checkContext);
  }
};

/// A store whose answer says the contrary of what it leaves in the record.
class ContradictingStore : public recording::Store
{
public:
  bool checkData(ManageableData& data, void* checkContext) override
  {
    return !Store::checkData(data, checkContext);
  }
};

class DefaultUserDataTest : public ManagerTest
{
protected:
  /// A user-data item of schema S whose value differs from its default.
  static ItemLine changed(const std::string& name)
  {
    return ItemLine(name).das("S", name).standard("d-" + name).both(name).user();
  }

  std::vector<std::string> resetting(bool expected)
  {
    return traced([&] { EXPECT_EQ(manager.setDefaultUserData(), expected); });
  }
};

TEST_F(DefaultUserDataTest, ResetsAnItemInTheDatabaseInTheServiceAndInTheStore)
{
  load({ItemLine("root").das("S", "port").index("idx", "2").standard("80").both("port").user()});
  getter("port").value = "81";
  EXPECT_THAT(resetting(true), ElementsAre("get port(\"2\")", "findService(\"LocalMgmtIfc\")", "checkData(root, null)",
                                           "findService(\"DataAccessServiceIfc\")",
                                           updateOf("S", "<Entry><idx>2</idx><port>80</port></Entry>"),
                                           "set port(\"80\", \"2\")", "publishData(root=80)"));
}

TEST_F(DefaultUserDataTest, TracesNothingButTheReplies)
{
  load({changed("a")});
  das.replies = {updateReply()};
  recording::behaviour().openLevel = 6;
  resetting(true);
  EXPECT_THAT(recording::traceOf("log"), ElementsAre("log 5 parseXMLDasReply \"" + updateReply() + "\""));
}

TEST_F(DefaultUserDataTest, WritesACellWithoutARowBareUnderTheSchema)
{
  load({changed("a")});
  EXPECT_THAT(resetting(true), ElementsAre("get a(\"\")", "findService(\"LocalMgmtIfc\")", "checkData(a, null)",
                                           "findService(\"DataAccessServiceIfc\")", updateOf("S", "<a>d-a</a>"),
                                           "set a(\"d-a\", \"\")", "publishData(a=d-a)"));
}

TEST_F(DefaultUserDataTest, PassesTheRecordsTheirRootIds)
{
  load({changed("a")});
  recording::behaviour().traceRecords = true;
  const auto trace = resetting(true);
  EXPECT_EQ(trace[1], "addRootId(a, null)");
  EXPECT_EQ(trace[trace.size() - 2], "populate(a, a, d-a)");
}

TEST_F(DefaultUserDataTest, ResetsItemsInTheOrderOfTheListOfIds)
{
  load({changed("a"), changed("b")});
  access.userDataIds = {"b", "a"};
  EXPECT_THAT(resetting(true),
              ElementsAre("get b(\"\")", "get a(\"\")", "findService(\"LocalMgmtIfc\")", "checkData(b,a, null)",
                          "findService(\"DataAccessServiceIfc\")", updateOf("S", "<b>d-b</b>"), "set b(\"d-b\", \"\")",
                          updateOf("S", "<a>d-a</a>"), "set a(\"d-a\", \"\")", "publishData(b=d-b,a=d-a)"));
}

TEST_F(DefaultUserDataTest, LeavesAnItemAloneThatIsAtItsDefault)
{
  load({changed("same"), changed("other")});
  getter("same").value = "d-same";
  resetting(true);
  EXPECT_THAT(recording::traceOf("checkData"), ElementsAre("checkData(other, null)"));
  EXPECT_EQ(recording::traceOf("sendRequest").size(), 1U);
  EXPECT_THAT(recording::traceOf("publishData"), ElementsAre("publishData(other=d-other)"));
}

TEST_F(DefaultUserDataTest, AnswersFalseWhenEveryItemIsAtItsDefault)
{
  load({changed("same")});
  getter("same").value = "d-same";
  EXPECT_THAT(resetting(false), ElementsAre("get same(\"\")", "findService(\"LocalMgmtIfc\")", "checkData(, null)"));
}

TEST_F(DefaultUserDataTest, ComparesTheValueExactly)
{
  load({changed("a")});
  getter("a").value = "D-A";
  resetting(true);
  getter("a").value = "d-a ";
  resetting(true);
}

TEST_F(DefaultUserDataTest, ChecksAnEmptyRecordWhenThereIsNoUserData)
{
  load({ItemLine("a").das("S", "a").standard("d").both("a")});
  EXPECT_THAT(resetting(false), ElementsAre("findService(\"LocalMgmtIfc\")", "checkData(, null)"));
}

TEST_F(DefaultUserDataTest, NeverResetsAnItemWithoutAGetter)
{
  load({ItemLine("mute").das("S", "a").standard("d").set("mute").user()});
  EXPECT_THAT(resetting(false), ElementsAre("findService(\"LocalMgmtIfc\")", "checkData(, null)"));
}

TEST_F(DefaultUserDataTest, PassesOverAnIdThatNoItemHas)
{
  load({changed("a")});
  access.userDataIds = {"unknown", "a", ""};
  resetting(true);
  EXPECT_THAT(recording::traceOf("publishData"), ElementsAre("publishData(a=d-a)"));
}

TEST_F(DefaultUserDataTest, ResetsNothingWhenTheStoreObjects)
{
  load({changed("a"), changed("b")});
  store.objection = "b";
  EXPECT_THAT(resetting(false),
              ElementsAre("get a(\"\")", "get b(\"\")", "findService(\"LocalMgmtIfc\")", "checkData(a,b, null)"));
}

TEST_F(DefaultUserDataTest, GoesByTheRootIdThatTheCheckLeavesAndNotByItsAnswer)
{
  ContradictingStore contradicting;
  context.services["LocalMgmtIfc"] = &contradicting;
  load({changed("a")});
  resetting(true);
  EXPECT_EQ(recording::traceOf("publishData").size(), 1U);
  contradicting.objection = "a";
  resetting(false);
  EXPECT_THAT(recording::traceOf("sendRequest"), IsEmpty());
}

TEST_F(DefaultUserDataTest, AnswersFalseWhenTheStoreDoesNotTakeTheDefaults)
{
  load({changed("a")});
  store.publishes = false;
  EXPECT_EQ(resetting(false).back(), "publishData(a=d-a)");
}

TEST_F(DefaultUserDataTest, ResetsBothItemsThatShareARootIdWithARequestEach)
{
  load({ItemLine("twin").das("S", "one").standard("1").both("one").user(),
        ItemLine("twin").das("T", "two").standard("2").both("two")});
  EXPECT_THAT(resetting(true),
              ElementsAre("get one(\"\")", "get two(\"\")", "findService(\"LocalMgmtIfc\")", "checkData(twin, null)",
                          "findService(\"DataAccessServiceIfc\")", updateOf("S", "<one>1</one>"),
                          "set one(\"1\", \"\")", updateOf("T", "<two>2</two>"), "set two(\"2\", \"\")",
                          "publishData(twin=2)"));
}

TEST_F(DefaultUserDataTest, ResetsAllItemsOfARootIdWhenOneOfThemDiffers)
{
  load({ItemLine("twin").das("S", "same").standard("1").both("same").user(),
        ItemLine("twin").das("S", "mute").standard("2"),
        ItemLine("twin").das("S", "other").standard("3").both("other")});
  getter("same").value = "1";
  resetting(true);
  EXPECT_THAT(
      recording::traceOf("sendRequest"),
      ElementsAre(updateOf("S", "<same>1</same>"), updateOf("S", "<mute>2</mute>"), updateOf("S", "<other>3</other>")));
}

TEST_F(DefaultUserDataTest, LeavesItToTheRecordToKeepARepeatedIdOnce)
{
  load({changed("a")});
  access.userDataIds = {"a", "a"};
  recording::behaviour().traceRecords = true;
  resetting(true);
  EXPECT_EQ(recording::traceOf("get a").size(), 2U);
  EXPECT_EQ(recording::traceOf("addRootId(a, null)").size(), 2U);
  EXPECT_EQ(recording::traceOf("sendRequest").size(), 1U);
}

TEST_F(DefaultUserDataTest, ResetsAnItemAsOftenAsTheCheckedRecordNamesIt)
{
  RepeatingStore repeating;
  context.services["LocalMgmtIfc"] = &repeating;
  load({changed("a")});
  resetting(true);
  EXPECT_EQ(recording::traceOf("sendRequest").size(), 2U);
  EXPECT_EQ(recording::traceOf("set a").size(), 2U);
}

TEST_F(DefaultUserDataTest, SendsTheDefaultAsItStands)
{
  load({ItemLine("a").das("S", "a").standard("<&>\"'").both("a").user()});
  resetting(true);
  EXPECT_THAT(recording::traceOf("sendRequest"), ElementsAre(updateOf("S", "<a><&>\"'</a>")));
}

TEST_F(DefaultUserDataTest, SendsAnEncryptedDefaultButSetsAndPublishesThePlainOne)
{
  load({changed("a").encrypted()});
  EXPECT_THAT(resetting(true), ElementsAre("get a(\"\")", "findService(\"LocalMgmtIfc\")", "checkData(a, null)",
                                           "findService(\"DataAccessServiceIfc\")", "toEncryptedText(\"d-a\")",
                                           updateOf("S", "<a>" + recording::encrypted("d-a") + "</a>"),
                                           "set a(\"d-a\", \"\")", "publishData(a=d-a)"));
}

TEST_F(DefaultUserDataTest, SendsPlainTextUnlessTheFlagIsExactlyTrue)
{
  load({changed("a").encrypted("True")});
  resetting(true);
  EXPECT_THAT(recording::traceOf("toEncryptedText"), IsEmpty());
  EXPECT_THAT(recording::traceOf("sendRequest"), ElementsAre(updateOf("S", "<a>d-a</a>")));
}

TEST_F(DefaultUserDataTest, SendsWhatAFailedEncryptionLeft)
{
  load({changed("a").encrypted()});
  recording::behaviour().encryptionFails = true;
  resetting(true);
  EXPECT_THAT(recording::traceOf("sendRequest"), ElementsAre(updateOf("S", "<a></a>")));
}

TEST_F(DefaultUserDataTest, SendsARequestForALocalItemTooButLeavesItsSetterAlone)
{
  load({ItemLine("local").standard("d").both("local").user()});
  EXPECT_THAT(resetting(true),
              ElementsAre("get local(\"\")", "findService(\"LocalMgmtIfc\")", "checkData(local, null)",
                          "findService(\"DataAccessServiceIfc\")", updateOf("", "<>d</>"), "publishData(local=d)"));
}

TEST_F(DefaultUserDataTest, PublishesAnItemWithoutASetter)
{
  load({ItemLine("a").das("S", "a").standard("d").get("a").user()});
  EXPECT_EQ(resetting(true).back(), "publishData(a=d)");
  EXPECT_THAT(recording::traceOf("set"), IsEmpty());
}

TEST_F(DefaultUserDataTest, IgnoresARefusingSetter)
{
  load({changed("a")});
  setter("a").accepts = false;
  setter("a").remark = "refused";
  recording::behaviour().openLevel = 4;
  EXPECT_EQ(resetting(true).back(), "publishData(a=d-a)");
  EXPECT_THAT(recording::traceOf("log"), IsEmpty());
}

TEST_F(DefaultUserDataTest, OffersTheSetterTheReasonThatThereIsNone)
{
  load({changed("a")});
  resetting(true);
  EXPECT_EQ(setter("a").errorOnEntry, "no setter available");
}

TEST_F(DefaultUserDataTest, ReportsABadReplyAndStillSetsAndPublishes)
{
  load({changed("a")});
  das.replies = {unit::replyOf("refused", "S", "")};
  recording::behaviour().openLevel = 3;
  const auto trace = resetting(true);
  EXPECT_THAT(recording::traceOf("log"),
              ElementsAre("log 3 setDefaultUserData bad XML reply from DataAccessService \"" +
                          unit::replyOf("refused", "S", "") + "\""));
  EXPECT_EQ(trace[trace.size() - 2], "set a(\"d-a\", \"\")");
  EXPECT_EQ(trace.back(), "publishData(a=d-a)");
}

TEST_F(DefaultUserDataTest, KeepsQuietAboutABadReplyWhileTheGateIsClosed)
{
  load({changed("a")});
  das.replies = {unit::replyOf("refused", "S", "")};
  recording::behaviour().openLevel = 2;
  resetting(true);
  EXPECT_THAT(recording::traceOf("log"), IsEmpty());
}

TEST_F(DefaultUserDataTest, AppliesTheValuesOfTheReplyToTheItems)
{
  load({changed("a"), ItemLine("neighbour").das("S", "n").set("neighbour")});
  das.replies = {readReply("S", "<n>imported</n>")};
  const auto trace = resetting(true);
  EXPECT_THAT(recording::traceOf("set"), ElementsAre("set neighbour(\"imported\", \"\")", "set a(\"d-a\", \"\")"));
}

TEST_F(DefaultUserDataTest, LeavesTheGroupFlagsOfTheRepliesAndThoseBefore)
{
  load({changed("a").group("Own"), ItemLine("neighbour").das("S", "n").set("neighbour").group("Imported")});
  access.groups = {{"Before", true}};
  das.replies = {readReply("S", "<n>imported</n>")};
  resetting(true);
  EXPECT_THAT(access.groups, ElementsAre(::testing::Key("Before"), ::testing::Key("Imported")));
  EXPECT_THAT(recording::traceOf("clearGroup"), IsEmpty());
  EXPECT_THAT(recording::traceOf("validateGroup"), IsEmpty());
}

TEST_F(DefaultUserDataTest, NotesTheChangesThatAReplyMakesOfARunningService)
{
  load({changed("a")});
  manager.setStartup(false);
  das.replies = {readReply("S", "<a>imported</a>")};
  resetting(true);
  EXPECT_THAT(access.changedItems, ElementsAre(&item("a")));
}

TEST_F(DefaultUserDataTest, KeepsTheListOfIds)
{
  load({changed("a"), changed("b")});
  resetting(true);
  EXPECT_THAT(access.userDataIds, ElementsAre("a", "b"));
}

TEST_F(DefaultUserDataTest, AnswersFalseWithoutTheStore)
{
  load({changed("a")});
  withdraw("LocalMgmtIfc");
  EXPECT_THAT(resetting(false),
              ElementsAre("get a(\"\")", "findService(\"LocalMgmtIfc\")", "log 2 setDefaultUserData Can't find OCMS"));
}

TEST_F(DefaultUserDataTest, AnswersFalseWithoutTheDatabase)
{
  load({changed("a")});
  withdraw("DataAccessServiceIfc");
  EXPECT_THAT(resetting(false), ElementsAre("get a(\"\")", "findService(\"LocalMgmtIfc\")", "checkData(a, null)",
                                            "findService(\"DataAccessServiceIfc\")",
                                            "log 2 setDefaultUserData Can't find DataAccessService"));
}

TEST_F(DefaultUserDataTest, AnswersFalseBeforeAMapIsLoaded)
{
  EXPECT_FALSE(manager.setDefaultUserData());
}

TEST_F(DefaultUserDataTest, PassesOverMissingEntriesOfTheTable)
{
  access.items.push_back(nullptr);
  load({changed("a")});
  EXPECT_EQ(resetting(true).back(), "publishData(a=d-a)");
}

TEST_F(DefaultUserDataTest, HoldsTheLockForItsWholeRun)
{
  load({changed("a")});
  recording::behaviour().traceLock = true;
  const auto trace = resetting(true);
  EXPECT_EQ(trace.front(), "lock");
  EXPECT_EQ(trace.back(), "unlock");
  EXPECT_EQ(recording::traceOf("lock").size(), 1U);
}

TEST_F(DefaultUserDataTest, ReleasesTheLockWhenAServiceThrowsAndWorksAgainAfterwards)
{
  load({changed("a")});
  das.hook = [] { throw std::runtime_error("database"); };
  EXPECT_THROW(manager.setDefaultUserData(), std::runtime_error);
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
  das.hook = nullptr;
  EXPECT_EQ(resetting(true).back(), "publishData(a=d-a)");
}

} // namespace
