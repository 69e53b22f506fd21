// How setters answer, and what getters show.
#include "SettingCallbacks.h"

#include <RejectReasonsStrings.h>
#include <gtest/gtest.h>

#include <algorithm>

using namespace commsservice;

namespace
{

class SettingCallbacksTest : public testing::Test
{
protected:
  bool set(const std::string& name, const std::string& value, const std::string& row = "")
  {
    const Setting& setting =
        *std::find_if(settings().begin(), settings().end(), [&](const Setting& each) { return each.name == name; });
    error = "no setter available";
    return makeSetter(setting, live, calls, validator)->setValue(value, row, error);
  }

  LiveValues live{settings()};
  CallLog calls;
  GroupValidator validator{groupRules(), live, calls};
  std::string error;
};

} // namespace

TEST_F(SettingCallbacksTest, MakesANewValueLiveWithoutARemark)
{
  EXPECT_TRUE(set("KeepAliveSeconds", "60"));
  EXPECT_EQ(error, "");
  EXPECT_EQ(live.get("KeepAliveSeconds"), "60");
}

TEST_F(SettingCallbacksTest, RefusesWithTheRulesReasonAndKeepsTheValue)
{
  EXPECT_FALSE(set("KeepAliveSeconds", "601"));
  EXPECT_EQ(error, "must be a whole number from 0 to 600");
  EXPECT_EQ(live.get("KeepAliveSeconds"), "30");
}

TEST_F(SettingCallbacksTest, AcceptsTheSameValueAsUnchanged)
{
  EXPECT_TRUE(set("KeepAliveSeconds", "30"));
  EXPECT_EQ(error, RejectReasonsStrings::unchanged_data);
}

TEST_F(SettingCallbacksTest, RefusesTheSameValueWhereTakingItWouldInterrupt)
{
  EXPECT_FALSE(set("TransportProtocol", "udp"));
  EXPECT_EQ(error, RejectReasonsStrings::not_changed);
  const CallReport report = calls.take();
  EXPECT_EQ(report.repeated, 1U);
  EXPECT_TRUE(report.refusals.empty());
}

TEST_F(SettingCallbacksTest, TakesEachRowForItself)
{
  EXPECT_TRUE(set("LineLabel", "Desk", "2"));
  EXPECT_EQ(live.get("LineLabel", "1"), "");
  EXPECT_EQ(live.get("LineLabel", "2"), "Desk");
}

TEST_F(SettingCallbacksTest, RefusesARowThatIsNotThere)
{
  EXPECT_FALSE(set("LineLabel", "Desk", "4"));
  EXPECT_EQ(error, "has no row 4");
  EXPECT_FALSE(set("LineLabel", "Desk"));
  EXPECT_EQ(error, "needs a row");
  EXPECT_FALSE(set("KeepAliveSeconds", "60", "1"));
}

TEST_F(SettingCallbacksTest, LeavesAGroupsValueToTheValidator)
{
  EXPECT_TRUE(set("IpAddress", "192.168.1.33"));
  EXPECT_EQ(live.get("IpAddress"), "192.168.1.20");
  std::string reason;
  EXPECT_TRUE(validator.validateGroup(reason, "IpAddressing"));
  EXPECT_EQ(live.get("IpAddress"), "192.168.1.33");
}

TEST_F(SettingCallbacksTest, MarksAGroupsUnchangedValueAndHandsItOverAllTheSame)
{
  EXPECT_TRUE(set("IpAddress", "192.168.1.20"));
  EXPECT_EQ(error, RejectReasonsStrings::unchanged_data);
  std::string reason;
  EXPECT_TRUE(validator.validateGroup(reason, "IpAddressing"));
  EXPECT_EQ(validator.getValidGroupItems("IpAddressing").size(), 1U);
}

TEST_F(SettingCallbacksTest, SpoilsTheGroupOfARefusedMember)
{
  EXPECT_TRUE(set("IpAddress", "192.168.1.33"));
  EXPECT_FALSE(set("IpNetmask", "255.0.255.0"));
  std::string reason;
  EXPECT_FALSE(validator.validateGroup(reason, "IpAddressing"));
}

TEST_F(SettingCallbacksTest, TakesAnEmptyLocalValueAsNoneStored)
{
  EXPECT_TRUE(set("HandsetVolume", "9", "1"));
  EXPECT_TRUE(set("HandsetVolume", "", "1"));
  EXPECT_EQ(live.get("HandsetVolume", "1"), "5");
  EXPECT_EQ(calls.take().localValues, 1U);
}

TEST_F(SettingCallbacksTest, NotesRefusalsWithoutTheValue)
{
  set("SipPassword", "abc");
  const CallReport report = calls.take();
  ASSERT_EQ(report.refusals.size(), 1U);
  EXPECT_EQ(report.refusals.front().setting, "SipPassword");
  EXPECT_EQ(report.refusals.front().reason, "must have 6 to 64 characters, or empty");
  EXPECT_EQ(calls.take().setterCalls, 0U);
}

TEST_F(SettingCallbacksTest, ShowsTheLiveValueOfTheRow)
{
  const Setting label = Setting{"LineLabel", "", text(0, 20)}.inRows(3);
  live.set("LineLabel", "3", "Door");
  SettingGetter getter(label, live);
  EXPECT_EQ(getter.getValue("3"), "Door");
  EXPECT_EQ(getter.getValue("1"), "");
}
