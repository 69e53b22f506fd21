// When grouped values become live, and what is left when they do not.
#include "GroupValidator.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace commsservice;

namespace
{

using Items = std::vector<std::pair<std::string, std::string>>;

class GroupValidatorTest : public testing::Test
{
protected:
  const Setting& setting(const std::string& name)
  {
    return *std::find_if(settings().begin(), settings().end(), [&](const Setting& each) { return each.name == name; });
  }
  void stage(const std::string& name, const std::string& value)
  {
    validator.stage(setting(name), value);
  }
  bool valid(const std::string& group)
  {
    reason.clear();
    return validator.validateGroup(reason, group);
  }

  LiveValues live{settings()};
  CallLog calls;
  GroupValidator validator{groupRules(), live, calls};
  std::string reason;
};

} // namespace

TEST_F(GroupValidatorTest, KeepsStagedValuesFromBecomingLiveBeforeTheVerdict)
{
  stage("RtpFirstPort", "2000");
  EXPECT_EQ(live.get("RtpFirstPort"), "16384");
}

TEST_F(GroupValidatorTest, MakesAcceptedValuesLive)
{
  stage("RtpFirstPort", "2000");
  EXPECT_TRUE(valid("RtpPorts"));
  EXPECT_EQ(live.get("RtpFirstPort"), "2000");
}

TEST_F(GroupValidatorTest, JudgesPendingValuesTogetherWithLiveOnes)
{
  stage("RtpFirstPort", "20000");
  EXPECT_FALSE(valid("RtpPorts"));
  EXPECT_EQ(reason, "RtpPorts: the port range must end after its begin: 20000 to 16482");
  stage("RtpLastPort", "30000");
  EXPECT_TRUE(valid("RtpPorts"));
}

TEST_F(GroupValidatorTest, KeepsLiveValuesWhenTheGroupIsRefused)
{
  stage("IpAddress", "10.1.1.5");
  EXPECT_FALSE(valid("IpAddressing"));
  EXPECT_EQ(live.get("IpAddress"), "192.168.1.20");
}

TEST_F(GroupValidatorTest, ListsAcceptedItemsInTheOrderTheyCame)
{
  stage("RtpLastPort", "3000");
  stage("RtpFirstPort", "2000");
  EXPECT_TRUE(valid("RtpPorts"));
  EXPECT_EQ(validator.getValidGroupItems("RtpPorts"),
            (Items{{"transport.rtpLastPort", "3000"}, {"transport.rtpFirstPort", "2000"}}));
}

TEST_F(GroupValidatorTest, ListsNothingBeforeTheVerdictAndAfterARefusal)
{
  stage("RtpFirstPort", "60000");
  EXPECT_TRUE(validator.getValidGroupItems("RtpPorts").empty());
  EXPECT_FALSE(valid("RtpPorts"));
  EXPECT_TRUE(validator.getValidGroupItems("RtpPorts").empty());
}

TEST_F(GroupValidatorTest, TakesTheLastOfTwoValuesForOneItem)
{
  stage("RtpFirstPort", "2000");
  stage("RtpFirstPort", "2002");
  EXPECT_TRUE(valid("RtpPorts"));
  EXPECT_EQ(validator.getValidGroupItems("RtpPorts"), (Items{{"transport.rtpFirstPort", "2002"}}));
}

TEST_F(GroupValidatorTest, ForgetsWhatIsPendingWhenCleared)
{
  stage("RtpFirstPort", "60000");
  validator.clearGroup("RtpPorts");
  EXPECT_TRUE(valid("RtpPorts"));
  EXPECT_EQ(live.get("RtpFirstPort"), "16384");
}

TEST_F(GroupValidatorTest, ClearsOneGroupAndNotTheOthers)
{
  stage("RtpFirstPort", "2000");
  validator.clearGroup("IpAddressing");
  EXPECT_TRUE(valid("RtpPorts"));
  EXPECT_EQ(live.get("RtpFirstPort"), "2000");
}

TEST_F(GroupValidatorTest, RefusesAGroupThatHadAMemberRefused)
{
  stage("IpAddress", "192.168.1.30");
  validator.spoil(setting("IpNetmask"));
  EXPECT_FALSE(valid("IpAddressing"));
  EXPECT_NE(reason.find("ip.netmask"), std::string::npos);
  EXPECT_EQ(live.get("IpAddress"), "192.168.1.20");
}

TEST_F(GroupValidatorTest, ForgetsARefusedMemberWithTheOperation)
{
  validator.spoil(setting("IpNetmask"));
  validator.forgetAll();
  stage("IpAddress", "192.168.1.30");
  EXPECT_TRUE(valid("IpAddressing"));
}

TEST_F(GroupValidatorTest, TakesAGroupWithNothingPending)
{
  EXPECT_TRUE(valid("SipCredentials"));
  EXPECT_TRUE(validator.getValidGroupItems("SipCredentials").empty());
}

TEST_F(GroupValidatorTest, RefusesAGroupItDoesNotKnow)
{
  EXPECT_FALSE(valid("Other"));
  EXPECT_NE(reason, "");
  EXPECT_TRUE(validator.getValidGroupItems("Other").empty());
  validator.clearGroup("Other");
}

TEST_F(GroupValidatorTest, JudgesReloadedValuesAsTheyWereHandedOver)
{
  stage("RtpFirstPort", "2000");
  validator.reloadGroup("RtpPorts");
  EXPECT_TRUE(valid("RtpPorts"));
  EXPECT_EQ(live.get("RtpFirstPort"), "2000");
}

TEST_F(GroupValidatorTest, NotesEveryVerdict)
{
  stage("RtpFirstPort", "60000");
  valid("RtpPorts");
  valid("SipCredentials");
  const CallReport report = calls.take();
  EXPECT_EQ(report.groupsJudged, 2U);
  ASSERT_EQ(report.groupRefusals.size(), 1U);
  EXPECT_EQ(report.groupRefusals.front().group, "RtpPorts");
}
