// Callbacks that call the manager again on the same thread.
#include "ManagerTest.h"
#include "NotingItem.h"

namespace
{

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;
using unit::readReply;

class CallingBack : public ManagerTest
{
protected:
  /// Runs `call` at the first run of a hook only.
  static recording::Hook once(std::function<void()> call)
  {
    auto pending = std::make_shared<bool>(true);
    return [call, pending]
    {
      if (std::exchange(*pending, false))
        call();
    };
  }

  std::string read(const std::string& rootId)
  {
    auto data = request({{rootId, ""}});
    manager.getData(*data);
    std::string value;
    data->interogate(rootId, rootId, value);
    return value;
  }
};

TEST_F(CallingBack, AReadInsideAStartAnswersAndLeavesTheOuterParseAsItWas)
{
  load({ItemLine("one").das("S", "C").index("I", "1").set("one"),
        ItemLine("two").das("S", "C").index("I", "2").set("two"), ItemLine("other").das("T", "D")});
  manager.setStartup(false);
  std::string inner;
  bool importing = false;
  das.hook = [&] { importing = true; };
  setter("one").hook = [&]
  {
    if (importing && inner.empty())
      inner = read("other");
  };
  das.replies = {readReply("S", "<Entry><I>1</I><C>a</C></Entry><Entry><I>2</I><C>b</C></Entry>"),
                 readReply("T", "<D>inner</D>")};
  manager.initialise("");
  EXPECT_EQ(inner, "inner");
  EXPECT_THAT(recording::trace(), Contains(R"(set two("b", "2"))"));
  EXPECT_EQ(access.reply.schema, "S") << "the state that carries over is the outer one";
}

TEST_F(CallingBack, AnInnerReplyWithoutAKindIsNotJudgedByTheOuterOne)
{
  load({ItemLine("one").das("S", "C").set("one"), ItemLine("other").das("T", "D").standard("default")});
  manager.setStartup(false);
  std::string inner;
  bool importing = false;
  das.hook = [&] { importing = true; };
  setter("one").hook = [&]
  {
    if (importing)
      inner = read("other");
  };
  das.replies = {readReply("S", "<C>a</C>"), R"(<Schema name="T"><D>inner</D></Schema>)"};
  manager.initialise("");
  EXPECT_EQ(inner, "default");
}

TEST_F(CallingBack, AnInnerExceptionThatTheCallbackContainsDoesNotStopTheOuterImport)
{
  load({ItemLine("one").das("S", "C").set("one"), ItemLine("two").das("S", "D").set("two"),
        ItemLine("other").das("T", "E").get("other")});
  getter("other").hook = [] { throw std::runtime_error("inner"); };
  manager.setStartup(false);
  setter("one").hook = [&] { EXPECT_THROW(read("other"), std::runtime_error); };
  das.replies = {readReply("S", "<C>a</C><D>b</D>")};
  manager.initialise("");
  EXPECT_THAT(recording::trace(), Contains(R"(set two("b", ""))"));
}

TEST_F(CallingBack, ASetInsideTheValidatorKeepsGroupsAndRecordsApart)
{
  load({ItemLine("a").das("Snmp", "A").set("a"), ItemLine("g").das("S", "G").set("g").group("one"),
        ItemLine("h").das("S", "H").set("h").group("two"), ItemLine("in").das("Snmp", "In").set("in")});
  validator.groups["one"].items = {{"g", "2"}};
  validator.groups["two"].items = {{"h", "3"}};
  validator.hook = once([&] { EXPECT_TRUE(manager.setData(*request({{"in", "inner"}}))); });
  auto outer = request({{"a", "1"}, {"g", "2"}, {"h", "3"}});
  EXPECT_TRUE(manager.setData(*outer));
  EXPECT_THAT(recording::traceOf("validateGroup"),
              ElementsAre(R"(validateGroup("", "one"))", R"(validateGroup("", "two"))"));
  EXPECT_THAT(recording::traceOf("clearGroup"), ElementsAre(R"(clearGroup("one"))", R"(clearGroup("two"))"));
  EXPECT_THAT(recording::traceOf("logSecurityEvent"),
              ElementsAre("logSecurityEvent(4, 1, 5, 3, done, \"Snmp set In(inner)\", \"\", \"\")",
                          "logSecurityEvent(4, 1, 5, 3, done, \"Snmp set A(1)\", \"\", \"\")"));
}

TEST_F(CallingBack, RecordsThatAnInnerOperationLeavesBehindComeAfterTheOuterOnes)
{
  withdraw("SecurityLogServiceIfc");
  load({ItemLine("a").das("Snmp", "A").set("a"), ItemLine("g").das("S", "G").set("g").group("one"),
        ItemLine("in").das("Snmp", "In").set("in")});
  validator.hook = once([&] { manager.setData(*request({{"in", "inner"}})); });
  manager.setData(*request({{"a", "1"}, {"g", "2"}}));
  EXPECT_THAT(access.pendingRecords, ElementsAre("Snmp set A(1)", "Snmp set In(inner)"));
}

TEST_F(CallingBack, ARecordIsGatheredBeforeItsCellIsTraced)
{
  withdraw("SecurityLogServiceIfc");
  load({ItemLine("a").das("Snmp", "A").set("a"), ItemLine("in").das("Snmp", "In").set("in")});
  recording::behaviour().openLevel = 6;
  const auto setInside = once([&] { manager.setData(*request({{"in", "inner"}})); });
  recording::behaviour().logHook = [&](int, const std::string& text)
  {
    if (text == "addDASItemEntry:'<A>1</A>'\n")
      setInside();
  };
  manager.setData(*request({{"a", "1"}}));
  EXPECT_THAT(access.pendingRecords, ElementsAre("Snmp set A(1)", "Snmp set In(inner)"));
}

TEST_F(CallingBack, AfterAnOperationEverythingIsFreedAtOnceAgain)
{
  load({ItemLine("a").das("S", "A").set("a")});
  access.items.push_back(new unit::NotingItem("noting"));
  manager.setData(*request({{"a", "1"}}));
  EXPECT_THAT(traced([&] { manager.clearAllManagedData(); }), ElementsAre("delete item noting"));
  EXPECT_THAT(traced([&] { manager.deleteSetters(); }), ElementsAre("delete setter a"));
}

TEST_F(CallingBack, WhatAnInnerOperationLeavesBehindIsNotLost)
{
  load({ItemLine("u").das("S", "U").standard("d").both("u").user(), ItemLine("g").das("S", "G").set("g").group("grp"),
        ItemLine("a").das("S", "A").set("a")});
  setter("a").hook = once(
      [&]
      {
        das.replies = {unit::replyOf("update_response", "S", "<G>x</G>")};
        EXPECT_TRUE(manager.setDefaultUserData());
      });
  manager.setData(*request({{"a", "1"}}));
  EXPECT_THAT(recording::trace(), Contains(R"(validateGroup("", "grp"))")) << "flagged by the inner reply";
}

TEST_F(CallingBack, AGroupThatIsFlaggedWhileAReloadSendsIsLeftToTheNextOperation)
{
  load({ItemLine("u").das("S", "U").standard("d").both("u").user(), ItemLine("g").das("S", "G").set("g").group("grp")});
  das.replies = {"<U>1</U>"};
  setter("u").hook = once(
      [&]
      {
        das.hook = once(
            [&]
            {
              das.replies = {unit::replyOf("update_response", "S", "<G>x</G>")};
              EXPECT_TRUE(manager.setDefaultUserData());
            });
      });
  manager.reloadUserData();
  EXPECT_THAT(access.groups, ElementsAre(::testing::Key("grp")));
}

TEST_F(CallingBack, AnOperationWorksOnWithItemsThatASetterCleared)
{
  load({ItemLine("a").das("Snmp", "A").set("a"), ItemLine("b").das("Snmp", "B").set("b").group("g")});
  setter("a").hook = [&] { manager.clearAllManagedData(); };
  EXPECT_TRUE(manager.setData(*request({{"a", "1"}, {"b", "2"}})));
  EXPECT_THAT(recording::trace(), Contains(R"(set b("2", ""))")) << "the operation works on what it started with";
  EXPECT_EQ(manager.getPublishedItem("a"), nullptr);
}

TEST_F(CallingBack, ItemsClearedInsideACallbackLiveUntilTheOperationEnds)
{
  load({ItemLine("a").das("S", "A").set("a")});
  access.items.push_back(new unit::NotingItem("noting"));
  setter("a").hook = [&]
  {
    manager.clearAllManagedData();
    EXPECT_THAT(access.items, IsEmpty());
    EXPECT_THAT(recording::traceOf("delete"), IsEmpty());
  };
  manager.setData(*request({{"a", "1"}}));
  EXPECT_THAT(recording::traceOf("delete"), ::testing::SizeIs(1));
}

TEST_F(CallingBack, AnImportWorksOnWithItemsThatAGetterCleared)
{
  load({ItemLine("a").das("S", "A").both("a").group("g"), ItemLine("b").das("S", "B").both("b")});
  manager.setStartup(false);
  getter("a").value = "x";
  bool importing = false;
  das.hook = [&] { importing = true; };
  getter("a").hook = [&]
  {
    if (importing)
      manager.clearAllManagedData();
  };
  das.replies = {readReply("S", "<A>v</A><B>w</B>")};
  withdraw("LocalMgmtIfc");
  manager.initialise("");
  EXPECT_THAT(access.changedItems, ::testing::SizeIs(2));
  EXPECT_THAT(access.changedItems, Each(nullptr)) << "noted as a change, then freed";
}

TEST_F(CallingBack, CallbacksThatACallbackDeletesLiveUntilTheOperationEnds)
{
  load({ItemLine("a").das("S", "A").set("a"), ItemLine("b").das("S", "B").set("b")});
  auto* last = &setter("a");
  last->hook = [&]
  {
    manager.deleteSetters();
    EXPECT_THAT(recording::traceOf("delete"), IsEmpty()) << "still running";
  };
  EXPECT_TRUE(manager.setData(*request({{"a", "1"}, {"b", "2"}})));
  EXPECT_THAT(recording::traceOf("delete"), ElementsAre("delete setter a", "delete setter b"));
  EXPECT_EQ(access.findSetterFunc("a"), nullptr);
}

TEST_F(CallingBack, GettersThatAGetterDeletesLiveUntilTheOperationEnds)
{
  load({ItemLine("a").das("S", "A").get("a"), ItemLine("b").das("S", "B").get("b")});
  getter("a").hook = [&]
  {
    manager.deleteGetters();
    EXPECT_THAT(recording::traceOf("delete"), IsEmpty()) << "still running";
  };
  EXPECT_TRUE(manager.getData(*request({{"a", ""}, {"b", ""}})));
  EXPECT_THAT(recording::traceOf("delete"), ElementsAre("delete getter a", "delete getter b"));
}

TEST_F(CallingBack, AValidatorThatTakesItselfAwayIsNotAskedAgain)
{
  load(
      {ItemLine("a").das("S", "A").set("a").group("g").user(), ItemLine("b").das("S", "B").set("b").group("h").user()});
  validator.hook = [&] { manager.setup(&context, &agent, "phone", nullptr); };
  manager.reloadUserData();
  EXPECT_THAT(recording::traceOf("reloadGroup"), ElementsAre(R"(reloadGroup("g"))"));
}

TEST_F(CallingBack, AChangeNotedWhileCallbacksAreFreedIsNoDanglingOne)
{
  struct Last : recording::Setter
  {
    explicit Last(std::function<void()> call) : Setter("last"), atEnd(std::move(call))
    {
    }
    ~Last() override
    {
      atEnd();
    }
    std::function<void()> atEnd;
  };
  writeItemMap("a,S,A,,,1,a,a,,,,\n");
  setter("a");
  getter("a").value = "other";
  manager.addSetter({"last", new Last(
                                 [&]
                                 {
                                   getter("a").hook = once([&] { manager.clearAllManagedData(); });
                                   manager.initialise("CommsItemMap");
                                 })});
  load({ItemLine("b").das("S", "B").get("b")});
  getter("b").hook = [&] { manager.deleteSetters(); };
  manager.getData(*request({{"b", ""}}));
  EXPECT_THAT(access.changedItems, Each(nullptr));
}

TEST_F(CallingBack, AStartInsideASetterLoadsOnTopOfTheOuterOne)
{
  writeItemMap("a,S,A,,,1,a,a,,g,,\nb,S,B,,,2,b,b,,,,\n");
  setter("a");
  setter("b");
  setter("a").hook = once([&] { manager.initialise("CommsItemMap"); });
  manager.initialise("CommsItemMap");
  EXPECT_EQ(access.items.size(), 4U) << "loaded twice, on top of each other";
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
  EXPECT_TRUE(manager.setData(*request({{"b", "3"}})));
}

TEST_F(CallingBack, EveryCallbackOfAWholeLifeMayCallEveryOperation)
{
  writeItemMap("a,Snmp,A,,,1,a,a,u,g,,\nb,S,B,I,2,2,b,b,u,,,true\nlocal,,,,,,local,local,,,,\n");
  for (const char* name : {"a", "b", "local"})
  {
    setter(name);
    getter(name).value = "live";
  }
  int depth = 0;
  const recording::Hook everything = [&]
  {
    if (depth > 0)
      return;
    ++depth;
    manager.setData(*request({{"a", "x"}, {"nobody", "y"}}));
    manager.getData(*request({{"a", ""}, {"b", ""}}));
    manager.manageableDataChanged(*request({{"local", "z"}}));
    std::string value;
    manager.importItemFromDAS("a", value);
    manager.setDefaultUserData();
    manager.reloadUserData();
    manager.getItem("local");
    manager.getPublishedItem("a");
    manager.ready();
    --depth;
  };
  for (const char* name : {"a", "b", "local"})
  {
    setter(name).hook = everything;
    getter(name).hook = everything;
  }
  for (recording::Hook* hook :
       {&context.hook, &das.hook, &interfaces.hook, &store.hook, &securityLog.hook, &validator.hook})
    *hook = everything;
  manager.initialise("CommsItemMap");
  everything();
  manager.setStartup(false);
  manager.initialise("CommsItemMap");
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
  EXPECT_THAT(access.groups, IsEmpty());
  EXPECT_THAT(access.changedItems, IsEmpty());
}

TEST_F(CallingBack, TheKindOfAnInnerReplyCarriesOverWhileTheOuterOneReadsNone)
{
  load({ItemLine("a").das("S", "A").set("a"), ItemLine("other").das("T", "D")});
  setter("a").hook = [&] { EXPECT_EQ(read("other"), "inner"); };
  das.replies = {readReply("T", "<D>inner</D>"), R"(<Schema name="S"><A>1</A></Schema>)"};
  EXPECT_TRUE(manager.setData(*request({{"a", "1"}}))) << "judged as a read reply, by the kind before";
  EXPECT_EQ(access.reply.schema, "S");
}

TEST_F(CallingBack, TheKindOfTheReplyBeforeCarriesOverToAnInnerOne)
{
  load({ItemLine("a").das("S", "A").set("a"), ItemLine("other").das("T", "D")});
  manager.setData(*request({{"other", "sent"}}));
  read("other");
  das.replies = {readReply("T", "<D>before</D>"), R"(<Schema name="T"><D>inner</D></Schema>)"};
  EXPECT_EQ(read("other"), "before");
  setter("a").hook = [&] { EXPECT_EQ(read("other"), "inner"); };
  manager.setData(*request({{"a", "1"}}));
}

TEST_F(CallingBack, WhatIsGotRidOfWhileAnOperationFreesWaitsForItsTurn)
{
  load({ItemLine("a").das("S", "A").both("a")});
  access.items.push_back(new unit::NotingItem("noting",
                                              [&]
                                              {
                                                manager.deleteGetters();
                                                recording::note("still in the item's destructor");
                                              }));
  setter("a").hook = [&] { manager.clearAllManagedData(); };
  const auto lines = traced(
      [&]
      {
        manager.manageableDataChanged(*request({}));
        manager.setData(*request({{"a", "1"}}));
      });
  const auto freed = std::find(lines.begin(), lines.end(), "delete item noting");
  EXPECT_THAT(std::vector<std::string>(freed, lines.end()),
              ElementsAre("delete item noting", "still in the item's destructor", "delete getter a"));
}

TEST_F(CallingBack, AnOperationInADestructorIsAnInnerOneWhileTheOuterFrees)
{
  load({ItemLine("a").das("S", "A").set("a")});
  int running = 0;
  access.items.push_back(new unit::NotingItem("noting",
                                              [&]
                                              {
                                                setter("a").hook = [&] { running = access.runningOperations; };
                                                load({ItemLine("b").das("S", "B").set("a")});
                                                manager.setData(*request({{"b", "2"}}));
                                              }));
  setter("a").hook = [&] { manager.clearAllManagedData(); };
  manager.setData(*request({{"a", "1"}}));
  EXPECT_EQ(running, 2);
  EXPECT_EQ(access.runningOperations, 0);
}

} // namespace
