// Callbacks and services that throw: the caller gets the exception, and the manager is ready for what comes next.
#include "ManagerTest.h"

namespace
{

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;
using unit::readReply;

struct Thrown : std::runtime_error
{
  Thrown() : std::runtime_error("thrown")
  {
  }
};

void throwIt()
{
  throw Thrown();
}

class ThrowingCallbacks : public ManagerTest
{
protected:
  ThrowingCallbacks()
  {
    load({ItemLine("a").das("Snmp", "A").standard("da").both("a").user(),
          ItemLine("g").das("Snmp", "G").standard("dg").both("g").group("grp").user(),
          ItemLine("local").both("local")});
    reloadFromDictionary();
  }

  /// What `initialise` loads: the same table again.
  void reloadFromDictionary()
  {
    store.dictionaries["map"] = {
        {"/item[1]/rootId", "a"}, {"/item[1]/dasSchema", "Snmp"}, {"/item[1]/dasItem", "A"},   {"/item[1]/setter", "a"},
        {"/item[1]/getter", "a"}, {"/item[2]/rootId", "local"},   {"/item[2]/setter", "local"}};
  }

  template <typename Operation>
  void expectClean(Operation operation)
  {
    EXPECT_THROW(operation(), Thrown);
    EXPECT_EQ(recording::behaviour().lockDepth, 0) << "the lock is released";
    EXPECT_THAT(access.groups, IsEmpty()) << "no group stays flagged";
    EXPECT_THAT(access.pendingRecords, IsEmpty()) << "no record is left to a later operation";
    EXPECT_EQ(access.reply.parser, nullptr) << "no parse is running";
    heal();
    auto next = request({{"a", "next"}, {"g", "next"}});
    EXPECT_TRUE(manager.setData(*next));
    EXPECT_THAT(recording::rejectReasons(*next), IsEmpty());
  }

  void heal()
  {
    for (const char* name : {"a", "g", "local"})
    {
      setter(name).hook = nullptr;
      getter(name).hook = nullptr;
    }
    for (recording::Hook* hook :
         {&context.hook, &das.hook, &interfaces.hook, &store.hook, &securityLog.hook, &validator.hook})
      *hook = nullptr;
    das.replies.clear();
  }

  /// Resets the user data, whose reply flags the group of the item in it.
  void importInside()
  {
    setter("a").hook = nullptr;
    setter("g").hook = nullptr;
    validator.hook = nullptr;
    das.replies = {readReply("Snmp", "<G>v</G>")};
    EXPECT_TRUE(manager.setDefaultUserData());
    EXPECT_THAT(access.groups, ::testing::SizeIs(1));
  }

  bool set()
  {
    return manager.setData(*request({{"a", "1"}, {"g", "2"}}));
  }
};

TEST_F(ThrowingCallbacks, ASetRequestEndsCleanWhenASetterThrows)
{
  setter("a").hook = throwIt;
  expectClean([&] { set(); });
}

TEST_F(ThrowingCallbacks, ASetRequestEndsCleanWhenTheSecondSetterThrows)
{
  setter("g").hook = throwIt;
  expectClean([&] { set(); });
  EXPECT_THAT(recording::traceOf("logSecurityEvent"),
              ElementsAre("logSecurityEvent(4, 1, 5, 3, done, \"Snmp set A(next)\", \"\", \"\")"))
      << "what was never sent is not reported later on";
}

TEST_F(ThrowingCallbacks, ASetRequestEndsCleanWhenTheValidatorThrows)
{
  validator.hook = throwIt;
  expectClean([&] { set(); });
  EXPECT_THAT(recording::trace(), Contains(R"(clearGroup("grp"))")) << "the validator is told to forget";
}

TEST_F(ThrowingCallbacks, TheSecurityLogHearsOfASetRequestThatTheDatabaseBroke)
{
  das.hook = throwIt;
  expectClean([&] { set(); });
  EXPECT_EQ(recording::traceOf("logSecurityEvent").front(),
            "logSecurityEvent(4, 1, 5, 3, failed, \"Snmp set A(1)\", \"\", \"\")")
      << "part of it may have been written, so the security log hears of it";
}

TEST_F(ThrowingCallbacks, TheSecurityLogGetsEveryRecordOnceEvenIfItThrows)
{
  load({ItemLine("b").das("Snmp", "B").set("b")});
  securityLog.hook = throwIt;
  expectClean([&] { manager.setData(*request({{"a", "1"}, {"b", "2"}})); });
  EXPECT_EQ(recording::traceOf("logSecurityEvent").size(), 3U);
}

TEST_F(ThrowingCallbacks, ASetRequestEndsCleanWhenAServiceLookupThrows)
{
  context.hook = throwIt;
  expectClean([&] { set(); });
}

TEST_F(ThrowingCallbacks, AReadRequestEndsCleanWhenAGetterThrows)
{
  getter("a").hook = throwIt;
  expectClean([&] { manager.getData(*request({{"a", ""}})); });
}

TEST_F(ThrowingCallbacks, AReadRequestEndsCleanWhenTheDatabaseThrows)
{
  item("a").getter = nullptr;
  das.hook = throwIt;
  expectClean([&] { manager.getData(*request({{"a", ""}})); });
}

TEST_F(ThrowingCallbacks, AChangeEndsCleanWhenASetterThrows)
{
  setter("local").hook = throwIt;
  expectClean([&] { manager.manageableDataChanged(*request({{"local", "1"}})); });
}

TEST_F(ThrowingCallbacks, AStartEndsCleanWhenASetterThrows)
{
  setter("g").hook = throwIt;
  expectClean(
      [&]
      {
        manager.initialise("map");
        manager.setStartup(false);
        manager.initialise("");
      });
}

TEST_F(ThrowingCallbacks, AReplyIsAppliedNoFurtherThanToTheSetterThatThrows)
{
  manager.setStartup(false);
  getter("a").value = "da";
  getter("g").value = "dg";
  das.replies = {readReply("Snmp", "<G>v</G><A>w</A><A>x</A>")};
  bool importing = false;
  das.hook = [&] { importing = true; };
  setter("a").hook = [&]
  {
    if (importing)
      throw Thrown();
  };
  expectClean([&] { manager.initialise(""); });
  EXPECT_EQ(recording::traceOf(R"(set a("w")").size(), 1U);
  EXPECT_THAT(recording::traceOf(R"(set a("x")"), IsEmpty()) << "nothing more is applied after the exception";
  EXPECT_THAT(recording::traceOf("log 2 parser error"), IsEmpty()) << "the stopped parser is no malformed reply";
}

TEST_F(ThrowingCallbacks, AStartCanBeRepeatedAfterTheStoreThrew)
{
  store.hook = throwIt;
  EXPECT_THROW(manager.initialise("map"), Thrown);
  heal();
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
  EXPECT_EQ(access.items.size(), 3U) << "half a map is no map";
  manager.clearAllManagedData();
  manager.initialise("map");
  EXPECT_EQ(access.items.size(), 2U);
}

TEST_F(ThrowingCallbacks, AResetOfUserDataEndsCleanWhateverThrows)
{
  getter("a").hook = throwIt;
  expectClean([&] { manager.setDefaultUserData(); });
  store.hook = throwIt;
  expectClean([&] { manager.setDefaultUserData(); });
  das.hook = throwIt;
  expectClean([&] { manager.setDefaultUserData(); });
  setter("a").hook = throwIt;
  expectClean([&] { manager.setDefaultUserData(); });
}

TEST_F(ThrowingCallbacks, AReloadOfUserDataEndsCleanWhateverThrows)
{
  das.fallback = [](const std::string&)
  { return "<Schema><ReasonForMessage>update_response</ReasonForMessage></Schema>"; };
  das.hook = throwIt;
  expectClean([&] { manager.reloadUserData(); });
  setter("g").hook = throwIt;
  expectClean([&] { manager.reloadUserData(); });
  validator.hook = throwIt;
  expectClean([&] { manager.reloadUserData(); });
  securityLog.hook = throwIt;
  expectClean([&] { manager.reloadUserData(); });
}

TEST_F(ThrowingCallbacks, AReloadThatThrowsKeepsTheRecordsOfAnEarlierOne)
{
  access.pendingRecords = {"earlier"};
  setter("a").hook = throwIt;
  EXPECT_THROW(manager.reloadUserData(), Thrown);
  EXPECT_THAT(access.pendingRecords, ElementsAre("earlier"));
}

TEST_F(ThrowingCallbacks, ALaterSetterMakesTheValidatorForgetWhatEarlierOnesHandedIt)
{
  load({ItemLine("z").das("S", "Z").both("z")});
  setter("z").hook = throwIt;
  const auto operation = [&] { EXPECT_THROW(manager.setData(*request({{"g", "1"}, {"z", "2"}})), Thrown); };
  EXPECT_THAT(traced(operation), Contains(R"(clearGroup("grp"))"));
  EXPECT_THAT(access.groups, IsEmpty());
}

TEST_F(ThrowingCallbacks, ASetterThatThrowsInAReloadMakesTheValidatorForgetItsGroup)
{
  setter("g").hook = throwIt;
  EXPECT_THAT(traced([&] { EXPECT_THROW(manager.reloadUserData(), Thrown); }), Contains(R"(clearGroup("grp"))"));
}

TEST_F(ThrowingCallbacks, ASetterThatThrowsInAStartMakesTheValidatorForgetItsGroup)
{
  manager.setStartup(false);
  setter("g").hook = throwIt;
  EXPECT_THAT(traced([&] { EXPECT_THROW(manager.initialise(""), Thrown); }), Contains(R"(clearGroup("grp"))"));
}

TEST_F(ThrowingCallbacks, ASetterThatThrowsInAResetMakesTheValidatorForgetItsGroup)
{
  setter("g").hook = throwIt;
  EXPECT_THAT(traced([&] { EXPECT_THROW(manager.setDefaultUserData(), Thrown); }), Contains(R"(clearGroup("grp"))"));
}

TEST_F(ThrowingCallbacks, WhatTheValidatorFlagsWhileItForgetsIsForgottenAsWell)
{
  setter("a").hook = throwIt;
  setter("g").hook = [&] { validator.hook = [&] { importInside(); }; };
  expectClean([&] { manager.setData(*request({{"g", "1"}, {"a", "2"}})); });
}

TEST_F(ThrowingCallbacks, AValidatorThatThrowsAgainIsAskedForEveryGroupAllTheSame)
{
  load({ItemLine("h").das("S", "H").both("h").group("other")});
  validator.hook = throwIt;
  const auto operation = [&] { EXPECT_THROW(manager.setData(*request({{"g", "1"}, {"h", "2"}})), Thrown); };
  const auto lines = traced(operation);
  EXPECT_THAT(lines, Contains(R"(clearGroup("grp"))"));
  EXPECT_THAT(lines, Contains(R"(clearGroup("other"))"));
}

TEST_F(ThrowingCallbacks, ASetRequestDropsItsOwnRecordsAndThoseItFound)
{
  access.pendingRecords = {"earlier", "and more"};
  setter("g").hook = nullptr;
  validator.hook = throwIt;
  expectClean([&] { set(); });
}

TEST_F(ThrowingCallbacks, ASetRequestWithAnUnknownItemEndsCleanWhenALaterSetterThrows)
{
  setter("g").hook = throwIt;
  expectClean([&] { manager.setData(*request({{"nobody", "1"}, {"a", "2"}, {"g", "3"}})); });
}

TEST_F(ThrowingCallbacks, ASecurityLogThatCanNotBeFoundKeepsTheRecordsOfWhatWasSent)
{
  das.hook = [&] { context.hook = throwIt; };
  EXPECT_THROW(manager.setData(*request({{"a", "1"}})), Thrown);
  EXPECT_THAT(access.pendingRecords, ElementsAre("Snmp set A(1)"));
}

TEST_F(ThrowingCallbacks, ADatabaseThatFailsKeepsTheRecordsWhileThereIsNoSecurityLog)
{
  withdraw("SecurityLogServiceIfc");
  das.hook = throwIt;
  EXPECT_THROW(manager.setData(*request({{"a", "1"}})), Thrown);
  EXPECT_THAT(access.pendingRecords, ElementsAre("Snmp set A(1)"));
}

TEST_F(ThrowingCallbacks, ALoadThatFailsLeavesTheTableAndItsUserDataAsTheyWere)
{
  const std::vector<std::string> before = access.userDataIds;
  store.hook = throwIt;
  EXPECT_THROW(manager.initialise("map"), Thrown);
  EXPECT_EQ(access.userDataIds, before);
  EXPECT_EQ(access.items.size(), 3U);
  EXPECT_EQ(manager.getPublishedItem("a"), &item("a"));
}

TEST_F(ThrowingCallbacks, ALoadThatFailsBehindAnInnerOneLeavesNoIndexOverWhatGoes)
{
  bool first = true;
  store.hook = [&]
  {
    if (std::exchange(first, false))
    {
      manager.initialise("map");
      throw Thrown();
    }
  };
  EXPECT_THROW(manager.initialise("map"), Thrown);
  EXPECT_EQ(manager.getPublishedItem("a"), &item("a"));
  EXPECT_EQ(access.items.size(), 3U);
}

TEST_F(ThrowingCallbacks, ARegistrationEndsCleanWhenTheStoreThrows)
{
  store.hook = throwIt;
  expectClean([&] { manager.ready(); });
}

} // namespace
