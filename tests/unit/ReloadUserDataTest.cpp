// Reading user data from the database again, and applying it as a set request would.
#include <algorithm>
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

std::string requestOf(const std::string& schema, const std::string& kind, const std::string& content)
{
  return R"(<?xml version="1.0" encoding="utf-8"?><Schema name=")" + schema + R"("><ReasonForMessage>)" + kind +
         "</ReasonForMessage>" + content + "</Schema>";
}

std::string readOf(const std::string& column)
{
  return requestOf("T", "read_request", "<ResultCols>" + column + "</ResultCols>");
}

std::string updateOf(const std::string& content)
{
  return requestOf("T", "update_request", content);
}

std::string sent(const std::string& request)
{
  return "sendRequest(" + request + ")";
}

/// Reads items from elsewhere.
class Elsewhere : public ServiceDataManager
{
public:
  void importItemFromDAS(const std::string& rootId, std::string& value) override
  {
    recording::note("importItemFromDAS " + rootId + " " + recording::quoted(value));
    value = "elsewhere";
  }
};

class ReloadUserDataTest : public ManagerTest
{
protected:
  ReloadUserDataTest()
  {
    das.fallback = [](const std::string& request)
    {
      if (request.find("update_request") != std::string::npos)
        return updateReply();
      const std::size_t begin = request.find("<ResultCols>") + 12;
      const std::string column = request.substr(begin, request.find('<', begin) - begin);
      return readReply("T", "<" + column + ">v-" + column + "</" + column + ">");
    };
  }

  /// A user-data item of schema T.
  static ItemLine userItem(const std::string& name)
  {
    return ItemLine(name).das("T", name).set(name).user();
  }

  std::vector<std::string> reloading()
  {
    return traced([&] { manager.reloadUserData(); });
  }
};

TEST_F(ReloadUserDataTest, ReadsSetsAndWritesBackEachItem)
{
  load({userItem("pin"), userItem("key")});
  EXPECT_THAT(reloading(), ElementsAre("findService(\"DataAccessServiceIfc\")", sent(readOf("pin")),
                                       sent(readOf("key")), "set pin(\"v-pin\", \"\")", "set key(\"v-key\", \"\")",
                                       sent(updateOf("<pin>v-pin</pin><key>v-key</key>"))));
}

TEST_F(ReloadUserDataTest, TracesEachStep)
{
  load({userItem("key")});
  recording::behaviour().openLevel = 4;
  const std::string reply = readReply("T", "<key>v-key</key>");
  EXPECT_THAT(reloading(),
              ElementsAre("log 4 reloadUserData 1", "log 4 convertDASUserItemToLocal key",
                          "log 4 importItemFromDAS \"key\" ", "findService(\"DataAccessServiceIfc\")",
                          "log 4 importItemFromDAS sending request to DataAccessService \"" + readOf("key") + "\"",
                          sent(readOf("key")), "log 4 importItemFromDAS reply from DataAccessService \"" + reply + "\"",
                          "log 4 importItemFromDAS stripped reply from DataAccessService \"v-key\"",
                          "log 4 importItemFromDAS value \"v-key\"", "log 4 trySetData \"key\" = \"v-key\"",
                          "set key(\"v-key\", \"\")", sent(updateOf("<key>v-key</key>"))));
}

TEST_F(ReloadUserDataTest, LogsNothingWhileTheGateIsClosed)
{
  load({userItem("key")});
  recording::behaviour().openLevel = 3;
  reloading();
  EXPECT_THAT(recording::traceOf("log"), IsEmpty());
}

TEST_F(ReloadUserDataTest, CountsZeroAndSendsNothingWithoutUserData)
{
  load({ItemLine("key").das("T", "key").set("key")});
  recording::behaviour().openLevel = 4;
  EXPECT_THAT(reloading(), ElementsAre("log 4 reloadUserData 0", "findService(\"DataAccessServiceIfc\")"));
}

TEST_F(ReloadUserDataTest, MakesOneSetRecordPerIdInTheOrderOfTheList)
{
  load({userItem("key"), userItem("pin")});
  access.userDataIds = {"pin", "key", "pin"};
  const auto blobs = access.convertDASUserItemToLocal();
  ASSERT_EQ(blobs.size(), 3U);
  EXPECT_EQ(blobs[0].rootId, "pin");
  EXPECT_EQ(blobs[0].value, "v-pin");
  EXPECT_FALSE(blobs[0].validated);
  EXPECT_EQ(blobs[0].reason, "");
  EXPECT_EQ(blobs[0].item, &item("pin"));
  EXPECT_EQ(blobs[1].rootId, "key");
  EXPECT_EQ(blobs[2].rootId, "pin");
}

TEST_F(ReloadUserDataTest, ReadsItemsThroughTheManagersOwnInterface)
{
  Elsewhere elsewhere;
  elsewhere.setup(&context, &agent, "phone", &validator);
  ServiceDataManagerTestAccess inner(elsewhere);
  inner.addDataItem("key", "T", "key", "", "", "", "", "", "", "");
  inner.userDataIds = {"key"};
  inner.buildIndexes();
  std::vector<ServiceDataManager::SetDataBlob> blobs;
  EXPECT_THAT(traced([&] { blobs = inner.convertDASUserItemToLocal(); }), ElementsAre("importItemFromDAS key \"\""));
  ASSERT_EQ(blobs.size(), 1U);
  EXPECT_EQ(blobs[0].value, "elsewhere");
}

TEST_F(ReloadUserDataTest, DecryptsAnEncryptedItem)
{
  load({userItem("key").encrypted()});
  das.replies = {readReply("T", "<key>" + recording::encrypted("plain") + "</key>")};
  reloading();
  EXPECT_THAT(recording::traceOf("fromEncryptedText"),
              ElementsAre("fromEncryptedText(\"" + recording::encrypted("plain") + "\")"));
  EXPECT_THAT(recording::traceOf("set"), ElementsAre("set key(\"plain\", \"\")"));
  EXPECT_EQ(recording::trace().back(), sent(updateOf("<key>" + recording::encrypted("plain") + "</key>")));
}

TEST_F(ReloadUserDataTest, KeepsTheEncryptedTextWhenItCanNotBeDecrypted)
{
  load({userItem("key").encrypted()});
  das.replies = {readReply("T", "<key>garbled</key>")};
  reloading();
  EXPECT_THAT(recording::traceOf("log"), ElementsAre("log 2 decryptData failed to base64decode data item"));
  EXPECT_THAT(recording::traceOf("set"), ElementsAre("set key(\"garbled\", \"\")"));
}

TEST_F(ReloadUserDataTest, ReadsPlainTextUnlessTheFlagIsExactlyTrue)
{
  load({userItem("key").encrypted("True")});
  das.replies = {readReply("T", "<key>" + recording::encrypted("plain") + "</key>")};
  reloading();
  EXPECT_THAT(recording::traceOf("fromEncryptedText"), IsEmpty());
  EXPECT_THAT(recording::traceOf("set"), ElementsAre("set key(\"" + recording::encrypted("plain") + "\", \"\")"));
}

TEST_F(ReloadUserDataTest, DoesNotDecryptAnEmptyValue)
{
  load({userItem("key").encrypted()});
  das.replies = {readReply("T", "<key></key>")};
  reloading();
  EXPECT_THAT(recording::traceOf("fromEncryptedText"), IsEmpty());
  EXPECT_THAT(recording::traceOf("set"), ElementsAre("set key(\"\", \"\")"));
}

TEST_F(ReloadUserDataTest, PassesTheConfiguredIndexToTheSetterAndWritesTheRowBack)
{
  load({userItem("key").index("row", "7")});
  reloading();
  EXPECT_THAT(recording::traceOf("set"), ElementsAre("set key(\"v-key\", \"7\")"));
  EXPECT_EQ(recording::trace().back(), sent(updateOf("<Entry><row>7</row><key>v-key</key></Entry>")));
}

TEST_F(ReloadUserDataTest, DoesNotWriteBackWhatASetterRefuses)
{
  load({userItem("key"), userItem("pin")});
  setter("key").accepts = false;
  setter("key").remark = "refused";
  reloading();
  EXPECT_EQ(recording::trace().back(), sent(updateOf("<pin>v-pin</pin>")));
}

TEST_F(ReloadUserDataTest, SkipsAnIdThatNamesNoDatabaseItem)
{
  load({ItemLine("local").set("local").user(), userItem("key")});
  recording::behaviour().openLevel = 4;
  reloading();
  EXPECT_THAT(recording::traceOf("log 2"), ElementsAre("log 2 importItemFromDAS unknown item \"local\""));
  EXPECT_THAT(recording::traceOf("log 4 trySetData"),
              ElementsAre("log 4 trySetData \"unknown item\" \"local\"", "log 4 trySetData \"key\" = \"v-key\""));
  EXPECT_THAT(recording::traceOf("set"), ElementsAre("set key(\"v-key\", \"\")"));
}

TEST_F(ReloadUserDataTest, IsSafeBeforeAMapIsLoaded)
{
  access.userDataIds = {"key"};
  EXPECT_THAT(reloading(),
              ElementsAre("log 2 importItemFromDAS unknown item \"key\"", "findService(\"DataAccessServiceIfc\")"));
}

TEST_F(ReloadUserDataTest, SetsEmptyTextsWithoutTheDatabase)
{
  load({userItem("key")});
  withdraw("DataAccessServiceIfc");
  EXPECT_THAT(reloading(), ElementsAre("findService(\"DataAccessServiceIfc\")",
                                       "log 2 importItemFromDAS Can't find DataAccessService", "set key(\"\", \"\")",
                                       "findService(\"DataAccessServiceIfc\")"));
}

class ReloadUserDataGroupsTest : public ReloadUserDataTest
{
protected:
  ReloadUserDataGroupsTest()
  {
    load({userItem("pin").group("B"), userItem("key").group("A"), userItem("free")});
    validator.groups["A"].items = {{"key", "held-key"}};
    validator.groups["B"].items = {{"pin", "held-pin"}};
  }
};

TEST_F(ReloadUserDataGroupsTest, ReloadsAndValidatesTheGroupsInTheirOrderAndWritesTheirItems)
{
  EXPECT_THAT(reloading(),
              ElementsAre("findService(\"DataAccessServiceIfc\")", sent(readOf("pin")), sent(readOf("key")),
                          sent(readOf("free")), "set pin(\"v-pin\", \"\")", "set key(\"v-key\", \"\")",
                          "set free(\"v-free\", \"\")", "reloadGroup(\"A\")", "reloadGroup(\"B\")",
                          "validateGroup(\"\", \"A\")", "validateGroup(\"\", \"B\")", "getValidGroupItems(\"A\")",
                          "getValidGroupItems(\"B\")", "clearGroup(\"A\")", "clearGroup(\"B\")",
                          sent(updateOf("<free>v-free</free><key>held-key</key><pin>held-pin</pin>"))));
  EXPECT_THAT(access.groups, IsEmpty());
}

TEST_F(ReloadUserDataGroupsTest, LeavesAFailedGroupOutAndSaysWhy)
{
  validator.groups["A"].valid = false;
  validator.groups["A"].reason = "they disagree";
  reloading();
  EXPECT_THAT(recording::traceOf("log"),
              ElementsAre("log 2 reloadUserData failed because \"they disagree\" for group: \"A\""));
  EXPECT_THAT(recording::traceOf("getValidGroupItems"), ElementsAre("getValidGroupItems(\"B\")"));
  EXPECT_THAT(recording::traceOf("clearGroup"), ElementsAre("clearGroup(\"A\")", "clearGroup(\"B\")"));
  EXPECT_EQ(recording::trace().back(), sent(updateOf("<free>v-free</free><pin>held-pin</pin>")));
  EXPECT_THAT(access.groups, IsEmpty());
}

TEST_F(ReloadUserDataGroupsTest, ReportsAFailedGroupBeforeItAddsTheNextOne)
{
  validator.groups["A"].valid = false;
  const auto trace = reloading();
  const auto failed =
      std::find(trace.begin(), trace.end(), "log 2 reloadUserData failed because \"\" for group: \"A\"");
  const auto added = std::find(trace.begin(), trace.end(), "getValidGroupItems(\"B\")");
  ASSERT_NE(failed, trace.end());
  EXPECT_LT(failed, added);
}

TEST_F(ReloadUserDataGroupsTest, DoesNotReloadAGroupWhoseItemWasRefused)
{
  setter("key").accepts = false;
  setter("key").remark = "refused";
  reloading();
  EXPECT_THAT(recording::traceOf("reloadGroup"), ElementsAre("reloadGroup(\"B\")"));
}

TEST_F(ReloadUserDataGroupsTest, FailsEveryGroupWithoutAValidatorAndCallsNothing)
{
  manager.setup(&context, &agent, "phone", nullptr);
  reloading();
  EXPECT_THAT(recording::traceOf("log"),
              ElementsAre("log 2 reloadUserData failed because \"validation ifc not found\" for group: \"A\"",
                          "log 2 reloadUserData failed because \"validation ifc not found\" for group: \"B\""));
  EXPECT_EQ(recording::trace().back(), sent(updateOf("<free>v-free</free>")));
  EXPECT_THAT(access.groups, IsEmpty());
}

TEST_F(ReloadUserDataGroupsTest, ClearsTheGroupsEvenWithoutTheDatabase)
{
  withdraw("DataAccessServiceIfc");
  reloading();
  EXPECT_THAT(recording::traceOf("clearGroup"), ElementsAre("clearGroup(\"A\")", "clearGroup(\"B\")"));
  EXPECT_THAT(access.groups, IsEmpty());
}

TEST_F(ReloadUserDataGroupsTest, TracesTheGroups)
{
  access.userDataIds = {"key"};
  recording::behaviour().openLevel = 6;
  reloading();
  EXPECT_THAT(recording::traceOf("log 6"), ElementsAre("log 6 checking group A", "log 6 found 1 valid items",
                                                       "log 6 \"key\" = \"held-key\", das item name found",
                                                       "log 6 addDASItemEntry:'<key>held-key</key>'\n"));
}

TEST_F(ReloadUserDataGroupsTest, TakesUpTheGroupsThatWereFlaggedBefore)
{
  access.groups = {{"Z", true}};
  reloading();
  EXPECT_THAT(recording::traceOf("reloadGroup"),
              ElementsAre("reloadGroup(\"A\")", "reloadGroup(\"B\")", "reloadGroup(\"Z\")"));
}

TEST_F(ReloadUserDataGroupsTest, DropsTheGroupsWhenTheValidatorThrows)
{
  validator.hook = [] { throw std::runtime_error("validator"); };
  EXPECT_THROW(manager.reloadUserData(), std::runtime_error);
  EXPECT_THAT(access.groups, IsEmpty());
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
  validator.hook = nullptr;
  EXPECT_EQ(reloading().back(), sent(updateOf("<free>v-free</free><key>held-key</key><pin>held-pin</pin>")));
}

TEST_F(ReloadUserDataTest, HandsTheSecurityLogRecordsOverAfterTheRequest)
{
  load({ItemLine("snmp").das("Snmp", "community").set("snmp").user()});
  const auto trace = reloading();
  EXPECT_EQ(trace.back(), "logSecurityEvent(4, 1, 5, 3, done, \"Snmp set community(v-community)\", \"\", \"\")");
  EXPECT_THAT(access.pendingRecords, IsEmpty());
}

TEST_F(ReloadUserDataTest, HandsOverRecordsOfAnEarlierOperationAsFailedWhenNothingIsSent)
{
  access.pendingRecords = {"earlier"};
  EXPECT_EQ(reloading().back(), "logSecurityEvent(4, 1, 5, 3, failed, \"earlier\", \"\", \"\")");
}

TEST_F(ReloadUserDataTest, ReportsABadReplyToTheUpdate)
{
  load({userItem("key")});
  das.replies = {readReply("T", "<key>1</key>"), unit::replyOf("refused", "T", "")};
  EXPECT_EQ(reloading().back(),
            "log 2 sendDASRequests bad XML reply from DataAccessService \"" + unit::replyOf("refused", "T", "") + "\"");
}

TEST_F(ReloadUserDataTest, KeepsTheListOfIds)
{
  load({userItem("key"), userItem("pin")});
  reloading();
  EXPECT_THAT(access.userDataIds, ElementsAre("key", "pin"));
}

TEST_F(ReloadUserDataTest, HoldsTheLockForItsWholeRun)
{
  load({userItem("key").encrypted().group("G")});
  std::vector<int> depths;
  const auto note = [&] { depths.push_back(recording::behaviour().lockDepth); };
  for (recording::Hook* hook : {&setter("key").hook, &das.hook, &context.hook, &validator.hook})
    *hook = note;
  recording::behaviour().traceLock = true;
  const auto trace = reloading();
  EXPECT_EQ(trace.front(), "lock");
  EXPECT_EQ(trace.back(), "unlock");
  EXPECT_THAT(depths, ::testing::Each(::testing::Ge(1)));
  EXPECT_EQ(depths.size(), 7U);
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
}

TEST_F(ReloadUserDataTest, ReleasesTheLockWhenASetterThrowsAndWorksAgainAfterwards)
{
  load({userItem("key")});
  setter("key").hook = [] { throw std::runtime_error("setter"); };
  EXPECT_THROW(manager.reloadUserData(), std::runtime_error);
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
  setter("key").hook = nullptr;
  EXPECT_EQ(reloading().back(), sent(updateOf("<key>v-key</key>")));
}

TEST_F(ReloadUserDataTest, PassesOnThatAReplyEndsWithTheNameOfTheColumn)
{
  load({userItem("key")});
  das.replies = {"xyz key"};
  EXPECT_THROW(manager.reloadUserData(), std::out_of_range);
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
}

TEST_F(ReloadUserDataTest, SetsNoItemThatWasClearedWhileItsValueWasRead)
{
  load({userItem("key")});
  das.hook = [&]
  {
    das.hook = nullptr;
    manager.clearAllManagedData();
  };
  reloading();
  EXPECT_THAT(recording::traceOf("set key"), IsEmpty());
}

TEST_F(ReloadUserDataTest, SetsNoItemThatWasClearedWhileItsValueWasDecrypted)
{
  load({userItem("key").encrypted()});
  recording::behaviour().everyCall = [&](const std::string& name)
  {
    if (name == "fromEncryptedText")
      manager.clearAllManagedData();
  };
  reloading();
  EXPECT_THAT(recording::trace(), ::testing::Contains(::testing::StartsWith("fromEncryptedText")));
  EXPECT_THAT(recording::traceOf("set key"), IsEmpty());
}

TEST_F(ReloadUserDataTest, ReadsTheValueOfTheItemThatIsThereAfterTheRead)
{
  load({userItem("key").encrypted()});
  das.hook = [&]
  {
    das.hook = nullptr;
    manager.clearAllManagedData();
    load({userItem("key")});
  };
  reloading();
  EXPECT_THAT(recording::traceOf("fromEncryptedText"), IsEmpty());
  EXPECT_THAT(recording::traceOf("set key"), ElementsAre(R"(set key("v-key", ""))"));
}

} // namespace
