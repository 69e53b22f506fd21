// When the members of a group go together.
#include "GroupRules.h"

#include <gtest/gtest.h>

#include <map>

using namespace commsservice;

namespace
{

std::string judge(const std::string& group, std::map<std::string, std::string> values)
{
  for (const GroupRule& rule : groupRules())
  {
    if (rule.name == group)
      return rule.judge([&](const std::string& setting) { return values[setting]; });
  }
  return "no such group";
}

std::string addressing(const std::string& address, const std::string& mask, const std::string& gateway)
{
  return judge("IpAddressing", {{"IpAddress", address}, {"IpNetmask", mask}, {"IpGateway", gateway}});
}

} // namespace

TEST(GroupRules, TakeAnAddressWithAGatewayOfItsNetwork)
{
  EXPECT_EQ(addressing("10.1.1.5", "255.255.0.0", "10.1.0.1"), "");
}

TEST(GroupRules, TakeAnAddressWithoutGateway)
{
  EXPECT_EQ(addressing("10.1.1.5", "255.255.0.0", ""), "");
}

TEST(GroupRules, RefuseAGatewayOfAnotherNetwork)
{
  EXPECT_EQ(addressing("10.1.1.5", "255.255.255.0", "10.1.0.1"),
            "the gateway 10.1.0.1 is not in the network 10.1.1.0/24 of the address");
}

TEST(GroupRules, RefuseTheDeviceAsItsOwnGateway)
{
  EXPECT_EQ(addressing("10.1.1.5", "255.255.0.0", "10.1.1.5"), "the gateway must not be the device itself");
}

TEST(GroupRules, RefuseTheAddressOfTheNetworkAndOfAllItsHosts)
{
  EXPECT_NE(addressing("10.1.1.0", "255.255.255.0", ""), "");
  EXPECT_NE(addressing("10.1.1.255", "255.255.255.0", ""), "");
}

TEST(GroupRules, TakeBothAddressesOfANetworkOfTwo)
{
  EXPECT_EQ(addressing("10.1.1.0", "255.255.255.254", "10.1.1.1"), "");
  EXPECT_EQ(addressing("10.1.1.1", "255.255.255.255", ""), "");
}

TEST(GroupRules, OrderTheEndsOfThePortRange)
{
  EXPECT_EQ(judge("RtpPorts", {{"RtpFirstPort", "9000"}, {"RtpLastPort", "10000"}}), "");
  EXPECT_EQ(judge("RtpPorts", {{"RtpFirstPort", "10000"}, {"RtpLastPort", "9000"}}),
            "the port range must end after its begin: 10000 to 9000");
  EXPECT_NE(judge("RtpPorts", {{"RtpFirstPort", "9000"}, {"RtpLastPort", "9000"}}), "");
}

TEST(GroupRules, TakeBothCredentialsOrNone)
{
  EXPECT_EQ(judge("SipCredentials", {{"SipUserName", ""}, {"SipPassword", ""}}), "");
  EXPECT_EQ(judge("SipCredentials", {{"SipUserName", "a"}, {"SipPassword", "secret"}}), "");
  EXPECT_EQ(judge("SipCredentials", {{"SipUserName", "a"}, {"SipPassword", ""}}), "a user name needs a password");
  EXPECT_EQ(judge("SipCredentials", {{"SipUserName", ""}, {"SipPassword", "secret"}}), "a password needs a user name");
}
