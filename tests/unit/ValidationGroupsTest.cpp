// The bookkeeping of groups that need a judgement.
#include "ManagerTest.h"

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;

class ValidationGroups : public ManagerTest
{
};

TEST_F(ValidationGroups, FlagsAGroupOnceWithOneLine)
{
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(traced(
                  [&]
                  {
                    access.flagGroupForValidation("g");
                    access.flagGroupForValidation("g");
                  }),
              ElementsAre("log 5 Add group \"g\" and flag it for validation"));
  EXPECT_EQ(access.groups, (std::map<std::string, bool>{{"g", true}}));
}

TEST_F(ValidationGroups, FlagsInSilenceBelowLevelFive)
{
  recording::behaviour().openLevel = 4;
  EXPECT_THAT(traced([&] { access.flagGroupForValidation("g"); }), IsEmpty());
  EXPECT_EQ(access.groups.size(), 1U);
}

TEST_F(ValidationGroups, UnflagsInSilence)
{
  access.flagGroupForValidation("g");
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(traced(
                  [&]
                  {
                    access.clearFlagGroupForValidation("g");
                    access.clearFlagGroupForValidation("unknown");
                  }),
              IsEmpty());
  EXPECT_THAT(access.groups, IsEmpty());
}

TEST_F(ValidationGroups, FlagsTheGroupOfAnItemThatHasOne)
{
  load({ItemLine("a").group("g"), ItemLine("b"), ItemLine("c").group(" ")});
  access.processItemForGroupData(&item("b"));
  EXPECT_THAT(access.groups, IsEmpty());
  access.processItemForGroupData(&item("a"));
  access.processItemForGroupData(&item("c"));
  EXPECT_EQ(access.groups, (std::map<std::string, bool>{{" ", true}, {"g", true}}));
}

TEST_F(ValidationGroups, PassesReasonAndGroupToTheValidator)
{
  std::string reason = "before";
  validator.groups["g"] = {false, "bad", {}};
  EXPECT_THAT(traced([&] { EXPECT_FALSE(access.validateGroupedData(reason, "g")); }),
              ElementsAre(R"(validateGroup("before", "g"))"));
  EXPECT_EQ(reason, "bad");
  EXPECT_TRUE(access.validateGroupedData(reason, "other"));
}

TEST_F(ValidationGroups, FailsWithoutAValidator)
{
  manager.setup(&context, &agent, "phone", nullptr);
  std::string reason;
  recording::behaviour().openLevel = 3;
  EXPECT_THAT(traced([&] { EXPECT_FALSE(access.validateGroupedData(reason, "g")); }),
              ElementsAre("log 3 validateGroupedData failed because \"validation ifc not found\""));
  EXPECT_EQ(reason, "validation ifc not found");
  recording::behaviour().openLevel = 2;
  EXPECT_THAT(traced([&] { access.validateGroupedData(reason, "g"); }), IsEmpty());
}

TEST_F(ValidationGroups, ClearsNothingWithoutAValidator)
{
  manager.setup(&context, &agent, "phone", nullptr);
  EXPECT_THAT(traced([&] { access.clearGroupedData("g"); }), IsEmpty());
}

TEST_F(ValidationGroups, ClearsEveryGroupAgainWhenTheFlagsWereLeft)
{
  access.groups = {{"b", true}, {"a", true}};
  const auto clearTwice = [&]
  {
    access.removeAllGroupsFromNeedingValidation();
    access.removeAllGroupsFromNeedingValidation();
  };
  EXPECT_THAT(traced(clearTwice),
              ElementsAre(R"(clearGroup("a"))", R"(clearGroup("b"))", R"(clearGroup("a"))", R"(clearGroup("b"))"));
  EXPECT_EQ(access.groups.size(), 2U);
}

TEST_F(ValidationGroups, DropsWhatTheValidatorSaysOfAGroupItAccepts)
{
  access.groups = {{"a", true}};
  validator.groups["a"] = {true, "remark of a valid group", {}};
  const auto outcomes = access.validateAllGroups();
  ASSERT_EQ(outcomes.size(), 1U);
  EXPECT_TRUE(outcomes[0].valid);
  EXPECT_EQ(outcomes[0].reason, "");
}

TEST_F(ValidationGroups, JudgesAllFlaggedGroupsInOrder)
{
  access.groups = {{"b", true}, {"a", true}};
  validator.groups["a"] = {true, "remark of a valid group", {}};
  validator.groups["b"] = {false, "bad", {}};
  recording::behaviour().openLevel = 6;
  std::vector<ServiceDataManager::GroupDataBlob> outcomes;
  EXPECT_THAT(traced([&] { outcomes = access.validateAllGroups(); }),
              ElementsAre("log 6 checking group a", R"(validateGroup("", "a"))", "log 6 checking group b",
                          R"(validateGroup("", "b"))"));
  ASSERT_EQ(outcomes.size(), 2U);
  EXPECT_EQ(outcomes[0].groupName, "a");
  EXPECT_TRUE(outcomes[0].valid);
  EXPECT_EQ(outcomes[0].reason, "");
  EXPECT_EQ(outcomes[1].groupName, "b");
  EXPECT_FALSE(outcomes[1].valid);
  EXPECT_EQ(outcomes[1].reason, "bad");
  EXPECT_EQ(access.groups.size(), 2U);
}

TEST_F(ValidationGroups, JudgesInSilenceBelowLevelSix)
{
  access.groups = {{"a", true}};
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(traced([&] { access.validateAllGroups(); }), ElementsAre(R"(validateGroup("", "a"))"));
}

TEST_F(ValidationGroups, JudgesNothingWhenNoGroupIsFlagged)
{
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(traced([&] { EXPECT_THAT(access.validateAllGroups(), IsEmpty()); }), IsEmpty());
}

} // namespace
