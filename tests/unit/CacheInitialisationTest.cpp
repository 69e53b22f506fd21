// Pushing defaults and imported values into the owning service.
#include "ManagerTest.h"

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;

class CacheInitialisation : public ManagerTest
{
protected:
  std::vector<std::string> initialise(const std::string& prefix = "")
  {
    return traced([&] { access.initialiseCacheItems(prefix); });
  }
};

TEST_F(CacheInitialisation, PushesDefaultsInLoadOrder)
{
  load({ItemLine("b").das("S", "B").index("I", "2").standard("x").set("b"),
        ItemLine("a").das("S", "A").standard("").set("a")});
  EXPECT_THAT(initialise(), ElementsAre(R"(set b("x", "2"))", R"(set a("", ""))"));
  EXPECT_EQ(setter("b").errorOnEntry, "");
}

TEST_F(CacheInitialisation, SkipsItemsWithoutSchemaOrSetter)
{
  load({ItemLine("local").both("local").group("g"), ItemLine("readonly").das("S", "C").get("readonly").group("g")});
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(initialise(), IsEmpty());
  EXPECT_THAT(access.changedItems, IsEmpty());
}

TEST_F(CacheInitialisation, NotesWhatDiffersFromItsDefaultBeforePushingIt)
{
  load({ItemLine("i").das("S", "C").index("I", "4").standard("7").both("i")});
  getter("i").value = "8";
  EXPECT_THAT(initialise(), ElementsAre(R"(get i("4"))", R"(set i("7", "4"))"));
  EXPECT_THAT(access.changedItems, ElementsAre(&item("i")));
}

TEST_F(CacheInitialisation, StillSetsAnItemAtItsDefault)
{
  load({ItemLine("i").das("S", "C").standard("7").both("i")});
  getter("i").value = "7";
  EXPECT_THAT(initialise(), ElementsAre(R"(get i(""))", R"(set i("7", ""))"));
  EXPECT_THAT(access.changedItems, IsEmpty());
}

TEST_F(CacheInitialisation, SparesExactlyTheRootIdsThatBeginWithThePrefix)
{
  load({ItemLine("phone.a").das("S", "A").set("a"), ItemLine("phone").das("S", "B").set("b"),
        ItemLine("my.phone.").das("S", "C").set("c"), ItemLine("phone.").das("S", "D").both("d").group("g")});
  getter("d").value = "live";
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(initialise("phone."),
              ElementsAre("log 6 initialiseCacheItems \"phone.a\" - setter not called", R"(set b("", ""))",
                          R"(set c("", ""))", R"(get d(""))",
                          "log 6 initialiseCacheItems \"phone.\" - setter not called",
                          "log 6 initialiseCacheItems \"phone.\"  found to be part of the group \"g\"",
                          "log 5 Add group \"g\" and flag it for validation", R"(validateGroup("", "g"))",
                          R"(clearGroup("g"))"));
  EXPECT_THAT(access.changedItems, ElementsAre(&item("phone.")));
}

TEST_F(CacheInitialisation, TracesNothingBelowLevelSix)
{
  load({ItemLine("phone.a").das("S", "A").set("a").group("g")});
  recording::behaviour().openLevel = 4;
  EXPECT_THAT(initialise("phone"), ElementsAre(R"(validateGroup("", "g"))", R"(clearGroup("g"))"));
}

TEST_F(CacheInitialisation, IgnoresRefusals)
{
  load({ItemLine("i").das("S", "C").set("i")});
  setter("i").accepts = false;
  setter("i").remark = "never";
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(initialise(), ElementsAre(R"(set i("", ""))"));
}

TEST_F(CacheInitialisation, ReportsFailedGroupsInOrderEachWithItsOwnReason)
{
  load({ItemLine("b").das("S", "B").set("b").group("beta"), ItemLine("a").das("S", "A").set("a").group("alpha")});
  validator.groups["alpha"] = {false, "bad", {}};
  validator.groups["beta"] = {false, "", {}};
  const auto lines = initialise();
  EXPECT_THAT(std::vector<std::string>(lines.begin() + 2, lines.end()),
              ElementsAre(R"(validateGroup("", "alpha"))", "log 2 initialiseCacheItems alpha failed validation \"bad\"",
                          R"(validateGroup("", "beta"))", "log 2 initialiseCacheItems beta failed validation \"\"",
                          R"(clearGroup("alpha"))", R"(clearGroup("beta"))"));
  EXPECT_THAT(access.groups, IsEmpty());
}

class SetSingleDataItem : public ManagerTest
{
protected:
  SetSingleDataItem()
  {
    load({ItemLine("i").das("S", "C").index("I", "4").both("i").group("g")});
  }

  std::string error = "no setter available";
};

TEST_F(SetSingleDataItem, PassesValueIndexAndErrorAndFlagsTheGroup)
{
  EXPECT_THAT(traced([&] { access.setSingleDataItem(&item("i"), "v", error); }), ElementsAre(R"(set i("v", "4"))"));
  EXPECT_EQ(setter("i").errorOnEntry, "no setter available");
  EXPECT_EQ(access.groups.count("g"), 1U);
}

TEST_F(SetSingleDataItem, ReportsARefusalWhileLevelThreeIsOpen)
{
  setter("i").accepts = false;
  setter("i").remark = "too loud";
  recording::behaviour().openLevel = 3;
  EXPECT_THAT(traced([&] { access.setSingleDataItem(&item("i"), "v", error); }),
              ElementsAre(R"(set i("v", "4"))", "log 3 setSingleDataItem set \"i\" failed \"too loud\""));
  EXPECT_EQ(access.groups.count("g"), 1U);
  recording::behaviour().openLevel = 2;
  EXPECT_THAT(traced([&] { access.setSingleDataItem(&item("i"), "v", error); }), ElementsAre(R"(set i("v", "4"))"));
}

TEST_F(SetSingleDataItem, KeepsSilentWhenTheRefusalSaysNotChangedAnywhere)
{
  setter("i").accepts = false;
  setter("i").remark = "value NOT_CHANGED";
  recording::behaviour().openLevel = 6;
  const auto lines = traced([&] { access.setSingleDataItem(&item("i"), "v", error); });
  EXPECT_THAT(lines, ElementsAre(R"(set i("v", "4"))", "log 5 Add group \"g\" and flag it for validation"));
}

TEST_F(SetSingleDataItem, DoesNothingAtAllForTheCurrentValue)
{
  getter("i").value = "v";
  EXPECT_THAT(traced([&] { access.setSingleChangedDataItem(&item("i"), "v", error); }), ElementsAre(R"(get i("4"))"));
  EXPECT_THAT(access.groups, IsEmpty());
  EXPECT_THAT(access.changedItems, IsEmpty());
}

TEST_F(SetSingleDataItem, NotesNoChangeWhenTheSetterThrows)
{
  getter("i").value = "old";
  setter("i").hook = [] { throw std::runtime_error("thrown"); };
  EXPECT_THROW(access.setSingleChangedDataItem(&item("i"), "v", error), std::runtime_error);
  EXPECT_THAT(access.changedItems, IsEmpty());
}

TEST_F(SetSingleDataItem, NotesAChangeEvenWhenItIsRefused)
{
  getter("i").value = "old";
  setter("i").accepts = false;
  EXPECT_THAT(traced([&] { access.setSingleChangedDataItem(&item("i"), "v", error); }),
              ElementsAre(R"(get i("4"))", R"(set i("v", "4"))"));
  EXPECT_EQ(access.groups.count("g"), 1U);
  EXPECT_THAT(access.changedItems, ElementsAre(&item("i")));
}

} // namespace
