// What an operation that an exception ends takes with it, and what it leaves to the operations after it.
#include <stdexcept>

#include "ManagerTest.h"

namespace
{

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Key;
using ::testing::Not;
using unit::ItemLine;
using unit::ManagerTest;
using unit::readReply;

struct Thrown
{
};

void throwIt()
{
  throw Thrown();
}

class FailedOperation : public ManagerTest
{
protected:
  FailedOperation()
  {
    load({ItemLine("u").das("Snmp", "U").standard("d").both("u").user(),
          ItemLine("old").das("S", "Old").standard("d").both("old").group("earlier"),
          ItemLine("g").das("S", "G").standard("d").both("g").group("own")});
    for (const char* name : {"u", "old", "g"})
      getter(name).value = "d";
    resetThatFlags();
    recording::trace().clear();
  }

  /// A reset of user data whose reply brings the value of an item in a group: the group stays flagged.
  void resetThatFlags()
  {
    getter("u").value = "other";
    das.replies = {readReply("S", "<Old>held</Old>")};
    EXPECT_TRUE(manager.setDefaultUserData());
    EXPECT_THAT(access.groups, ElementsAre(Key("earlier")));
  }

  /// A hook that runs once.
  static recording::Hook once(const recording::Hook& hook)
  {
    return [hook, ran = false]() mutable
    {
      if (!std::exchange(ran, true))
        hook();
    };
  }

  void expectEarlierIsLeft()
  {
    EXPECT_THAT(access.groups, ElementsAre(Key("earlier")));
    EXPECT_THAT(recording::traceOf("clearGroup(\"earlier\")"), IsEmpty()) << "the validator still holds its values";
  }

  void expectNothingIsLeft()
  {
    EXPECT_THAT(access.groups, IsEmpty());
    EXPECT_THAT(recording::trace(), Contains("clearGroup(\"earlier\")"));
  }
};

TEST_F(FailedOperation, ASingleImportOutOfRangeLeavesTheGroupsOfAnEarlierReset)
{
  das.replies = {"U"};
  std::string value;
  EXPECT_THROW(manager.importItemFromDAS("u", value), std::out_of_range);
  expectEarlierIsLeft();
}

TEST_F(FailedOperation, AReloadOutOfRangeLeavesTheGroupsOfAnEarlierReset)
{
  das.replies = {"U"};
  EXPECT_THROW(manager.reloadUserData(), std::out_of_range);
  expectEarlierIsLeft();
}

TEST_F(FailedOperation, AReadRequestLeavesTheGroupsOfAnEarlierReset)
{
  getter("u").hook = throwIt;
  EXPECT_THROW(manager.getData(*request({{"u", ""}})), Thrown);
  expectEarlierIsLeft();
}

TEST_F(FailedOperation, ASetRequestDropsItsOwnGroupsAndLeavesEarlierOnes)
{
  setter("u").hook = throwIt;
  EXPECT_THROW(manager.setData(*request({{"g", "1"}, {"u", "2"}})), Thrown);
  expectEarlierIsLeft();
  EXPECT_THAT(recording::traceOf("clearGroup"), ElementsAre("clearGroup(\"own\")"));
}

TEST_F(FailedOperation, ASetRequestThatTriedAnItemOfAnEarlierGroupLeavesThatGroup)
{
  setter("u").hook = throwIt;
  EXPECT_THROW(manager.setData(*request({{"old", "1"}, {"u", "2"}})), Thrown);
  expectEarlierIsLeft();
}

TEST_F(FailedOperation, TheNextSetRequestJudgesTheGroupsThatWereLeft)
{
  das.replies = {"U"};
  EXPECT_THROW(manager.reloadUserData(), std::out_of_range);
  const auto lines = traced([&] { manager.setData(*request({{"g", "1"}})); });
  EXPECT_THAT(lines, Contains("validateGroup(\"\", \"earlier\")"));
  EXPECT_THAT(lines, Contains("clearGroup(\"earlier\")"));
}

TEST_F(FailedOperation, ASetRequestThatJudgedEarlierGroupsDoesNotFlagThemAgain)
{
  das.hook = throwIt;
  EXPECT_THROW(manager.setData(*request({{"old", "1"}, {"u", "2"}})), Thrown);
  expectNothingIsLeft();
}

TEST_F(FailedOperation, AReloadThatJudgedEarlierGroupsDoesNotFlagThemAgain)
{
  access.userDataIds = {"u", "old"};
  das.replies = {"<U>1</U>", "<Old>2</Old>"};
  setter("old").hook = [&] { das.hook = throwIt; };
  EXPECT_THROW(manager.reloadUserData(), Thrown);
  expectNothingIsLeft();
}

TEST_F(FailedOperation, AStartThatJudgedEarlierGroupsDoesNotFlagThemAgain)
{
  manager.setStartup(false);
  das.replies = {readReply("S", "<Old>imported</Old>")};
  bool importing = false;
  das.hook = [&] { importing = true; };
  setter("old").hook = [&]
  {
    if (importing)
      throw Thrown();
  };
  EXPECT_THROW(manager.initialise(""), Thrown);
  expectNothingIsLeft();
}

TEST_F(FailedOperation, AnInnerOneDoesNotTakeTheGroupsOfTheOuterOne)
{
  setter("u").hook = throwIt;
  validator.hook = once([&] { EXPECT_THROW(manager.setData(*request({{"g", "inner"}, {"u", "inner"}})), Thrown); });
  manager.setData(*request({{"g", "outer"}}));
  const std::vector<std::string> ofTheOuterOne = {"clearGroup(\"earlier\")", "clearGroup(\"own\")"};
  EXPECT_EQ(recording::traceOf("clearGroup"), ofTheOuterOne);
}

TEST_F(FailedOperation, WhatTheValidatorCallsWhileItForgetsTakesNoEarlierGroup)
{
  setter("u").hook = once(throwIt);
  validator.hook = once(
      [&]
      {
        setter("u").hook = once(throwIt);
        EXPECT_THROW(manager.setData(*request({{"old", "inner"}, {"u", "inner"}})), Thrown);
      });
  EXPECT_THROW(manager.setData(*request({{"g", "1"}, {"u", "2"}})), Thrown);
  expectEarlierIsLeft();
}

TEST_F(FailedOperation, LeavesTheRecordsOfAnInnerOneThatFoundNoSecurityLog)
{
  withdraw("SecurityLogServiceIfc");
  setter("g").hook = [&]
  {
    manager.setData(*request({{"u", "inner"}}));
    throw Thrown();
  };
  EXPECT_THROW(manager.setData(*request({{"g", "outer"}})), Thrown);
  EXPECT_THAT(access.pendingRecords, ElementsAre("Snmp set U(inner)"));
}

TEST_F(FailedOperation, LeavesTheRecordsOfAnInnerOneBehindThoseItFound)
{
  access.pendingRecords = {"earlier"};
  withdraw("SecurityLogServiceIfc");
  das.replies = {"<U>1</U>"};
  setter("u").hook = once(
      [&]
      {
        manager.reloadUserData();
        throw Thrown();
      });
  EXPECT_THROW(manager.reloadUserData(), Thrown);
  EXPECT_THAT(access.pendingRecords, ElementsAre("earlier", "Snmp set U()"));
}

TEST_F(FailedOperation, DropsItsOwnRecordsAlthoughAnInnerOneLeftSome)
{
  withdraw("SecurityLogServiceIfc");
  setter("u").hook = once([&] { manager.setData(*request({{"u", "inner"}})); });
  validator.hook = throwIt;
  EXPECT_THROW(manager.setData(*request({{"u", "outer"}, {"g", "1"}})), Thrown);
  EXPECT_THAT(access.pendingRecords, ElementsAre("Snmp set U(inner)"));
}

TEST_F(FailedOperation, DropsWhatItHadGatheredBeforeAnInnerOneLeftRecords)
{
  withdraw("SecurityLogServiceIfc");
  validator.hook = once(
      [&]
      {
        manager.setData(*request({{"u", "inner"}}));
        throw Thrown();
      });
  EXPECT_THROW(manager.setData(*request({{"u", "outer"}, {"g", "1"}})), Thrown);
  EXPECT_THAT(access.pendingRecords, Not(Contains("Snmp set U(outer)")));
}

/// Runs a call while another exception passes.
template <typename Call>
void beside(Call call)
{
  struct AtTheEnd
  {
    ~AtTheEnd()
    {
      call();
    }
    Call& call;
  };
  try
  {
    const AtTheEnd guard{call};
    throw std::runtime_error("another");
  }
  catch (const std::runtime_error&)
  {
    return;
  }
}

TEST_F(FailedOperation, NothingFailsBecauseAnotherExceptionPasses)
{
  bool done = false;
  beside([&] { done = manager.setData(*request({{"g", "1"}, {"u", "2"}})); });
  EXPECT_TRUE(done);
  EXPECT_THAT(access.groups, IsEmpty());
  EXPECT_THAT(recording::traceOf("clearGroup"), ElementsAre("clearGroup(\"earlier\")", "clearGroup(\"own\")"));
}

TEST_F(FailedOperation, AResetBesideAnotherExceptionFlagsWhatItsReplyFlagsOnly)
{
  access.groups.clear();
  access.userDataIds = {"g"};
  getter("g").value = "other";
  beside([&] { EXPECT_TRUE(manager.setDefaultUserData()); });
  EXPECT_THAT(access.groups, IsEmpty()) << "the value went through, so its group is not flagged";
}

TEST_F(FailedOperation, CleansUpBesideAnotherExceptionAsWell)
{
  setter("u").hook = throwIt;
  beside([&] { EXPECT_THROW(manager.setData(*request({{"g", "1"}, {"u", "2"}})), Thrown); });
  expectEarlierIsLeft();
  EXPECT_THAT(recording::traceOf("clearGroup"), ElementsAre("clearGroup(\"own\")"));
}

TEST_F(FailedOperation, ForgetsEveryGroupOfAValidatorThatThrowsWhatIsNoException)
{
  load({ItemLine("h").das("S", "H").set("h").group("other")});
  validator.hook = [] { throw 42; };
  EXPECT_THROW(manager.setData(*request({{"g", "1"}, {"h", "2"}})), int);
  EXPECT_THAT(recording::traceOf("clearGroup"), ElementsAre("clearGroup(\"other\")", "clearGroup(\"own\")"));
  EXPECT_THAT(access.groups, ElementsAre(Key("earlier")));
}

TEST_F(FailedOperation, HandsOverEveryRecordToASecurityLogThatThrowsWhatIsNoException)
{
  load({ItemLine("v").das("Snmp", "V").set("v")});
  int number = 0;
  securityLog.hook = [&] { throw ++number; };
  try
  {
    manager.setData(*request({{"u", "1"}, {"v", "2"}}));
    ADD_FAILURE() << "nothing was thrown";
  }
  catch (int thrown)
  {
    EXPECT_EQ(thrown, 1) << "the first failure is told";
  }
  EXPECT_EQ(recording::traceOf("logSecurityEvent").size(), 2U);
}

} // namespace
