// Which values each kind of setting takes, and what it says of the others.
#include "ValueRules.h"

#include <gtest/gtest.h>

using namespace commsservice;

namespace
{

struct Sample
{
  const char* name;
  ValueRule rule;
  std::vector<std::string> taken;
  std::vector<std::string> refused;
};

std::vector<Sample> samples()
{
  return {
      {"text", text(1, 3), {"a", "abc", "é"}, {"", "abcd", "a\n", "\x7f", "éé"}},
      {"text of any language",
       text(0, 9),
       {"\u00e9", "\u20ac", "\ufffd", "\ue000", "\U0001f4de", "\U0010ffff"},
       {"\xff\xfe", "a\xc3", "\xc3z", "\x80", "\xc0\xaf", "\xe0\x80\xaf", "\xf0\x80\x80\xaf", "\xed\xa0\x80",
        "\xef\xbf\xbe", "\xef\xbf\xbf", "\xf4\x90\x80\x80", "\xf5\x80\x80\x80"}},
      {"plainText", plainText(0, 9), {"", "a b"}, {"a&b", "<", ">", "\"", "'", "a\tb"}},
      {"wholeNumber",
       wholeNumber(0, 600),
       {"0", "9", "600"},
       {"", "601", "-1", "+1", "007", "1.0", " 1", "99999999999999999999"}},
      {"port", port(), {"1", "65535"}, {"0", "65536"}},
      {"trueOrFalse", trueOrFalse(), {"true", "false"}, {"", "True", "1", "yes"}},
      {"alwaysTrue", alwaysTrue("x"), {"true"}, {"false", ""}},
      {"oneOf", oneOf({"a", "b"}), {"a", "b"}, {"", "c", "A", "ab"}},
      {"ipv4Address",
       ipv4Address(),
       {"10.0.0.1", "192.168.1.20"},
       {"", "10.0.0", "256.1.1.1", "01.2.3.4", "0.0.0.0", "224.0.0.1", "10.0.0.1 ", "a.b.c.d"}},
      {"netmask",
       netmask(),
       {"255.255.255.0", "128.0.0.0", "255.255.255.255"},
       {"0.0.0.0", "255.0.255.0", "255.255.255.1", "24", ""}},
      {"host",
       host(),
       {"a", "sip.example.com", "10.0.0.1", "3com"},
       {"", "-a", "a-", "a..b", ".a", "a.", "a_b", "1.2.3", "999.1.1.1", "a b"}},
      {"timeZone",
       timeZone(),
       {"UTC", "Europe/Berlin", "America/Argentina/Ushuaia"},
       {"", "Berlin", "/x", "x/", "a//b", "Europe/Ber lin"}},
      {"dialString", dialString(), {"", "*97", "+4930123", "#1"}, {"+", "12a", "1+2", std::string(33, '1').c_str()}},
      {"digits", digits(4, 8), {"1234", "12345678"}, {"", "123", "123456789", "12a4"}},
      {"orNone", orNone(port()), {"", "80"}, {"0", "x"}},
  };
}

} // namespace

TEST(ValueRules, TakeWhatFits)
{
  for (const Sample& sample : samples())
  {
    for (const std::string& value : sample.taken)
      EXPECT_EQ(sample.rule(value), "") << sample.name << " of '" << value << "'";
  }
}

TEST(ValueRules, SayWhyTheyRefuse)
{
  for (const Sample& sample : samples())
  {
    for (const std::string& value : sample.refused)
      EXPECT_EQ(sample.rule(value).rfind("must ", 0), 0U) << sample.name << " of '" << value << "'";
  }
}

TEST(ValueRules, RefuseATextThatGoesOnBehindItsEnd)
{
  EXPECT_NE(ipv4Address()(std::string("10.0.0.1\0x", 10)), "");
}

TEST(ValueRules, TellTheRangeOfANumber)
{
  EXPECT_EQ(port()("70000"), "must be a whole number from 1 to 65535");
}

TEST(ValueRules, TellTheChoices)
{
  EXPECT_EQ(oneOf({"udp", "tcp", "tls"})("x"), "must be udp, tcp or tls");
}

TEST(ValueRules, TellThatNoneIsAllowed)
{
  EXPECT_EQ(orNone(digits(4, 8))("1"), "must be 4 to 8 digits, or empty");
}

TEST(ValueRules, NeverQuoteTheValue)
{
  for (const Sample& sample : samples())
    EXPECT_EQ(sample.rule("zq\x01zq").find("zq"), std::string::npos) << sample.name;
}
