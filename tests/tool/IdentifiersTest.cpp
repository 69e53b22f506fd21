// Names and literals for C++ out of any texts.
#include "new/Identifiers.h"

#include <gtest/gtest.h>

using namespace cli::skeleton;
using namespace cli;

TEST(IdentifiersTest, CallAFieldLikeItsCallbackWithoutSetOrGet)
{
  EXPECT_EQ(fieldName("setLocalPort"), "localPort");
  EXPECT_EQ(fieldName("getLocalPort"), "localPort");
  EXPECT_EQ(fieldName("set-local-port"), "localPort");
  EXPECT_EQ(fieldName("SET LOCAL_PORT"), "localPort");
  EXPECT_EQ(fieldName("settings"), "settings");
  EXPECT_EQ(fieldName("set"), "set");
}

TEST(IdentifiersTest, AvoidWhatTheLanguageKeeps)
{
  EXPECT_EQ(fieldName("setClass"), "classValue");
  EXPECT_EQ(fieldName("xor"), "xorValue");
  EXPECT_EQ(fieldName("setStd"), "stdValue");
  EXPECT_EQ(namespaceName("new"), "newservice");
  EXPECT_EQ(namespaceName("door-bell_2"), "doorbell2");
}

TEST(IdentifiersTest, FindANameForEverything)
{
  EXPECT_EQ(fieldName("2nd"), "value2nd");
  EXPECT_EQ(fieldName("***"), "value");
  EXPECT_EQ(fieldName("\xff\xfe"), "value");
  EXPECT_EQ(typeName("Odd Rows!"), "OddRows");
  EXPECT_EQ(typeName("door-bell"), "DoorBell");
  EXPECT_EQ(typeName("!"), "Items");
}

TEST(IdentifiersTest, AreHandedOutOnce)
{
  UniqueNames names;
  EXPECT_EQ(names.claim("volume"), "volume");
  EXPECT_EQ(names.claim("volume"), "volume2");
  EXPECT_EQ(names.claim("volume2"), "volume22");
  EXPECT_EQ(names.claim("volume"), "volume3");
}

TEST(LiteralTest, StandsForExactlyItsBytes)
{
  EXPECT_EQ(literal(""), R"("")");
  EXPECT_EQ(literal(R"(say "hi"\)"), R"("say \"hi\"\\")");
  EXPECT_EQ(literal(std::string("a\0001\n\x7f", 5)), R"("a\0001\012\177")");
  EXPECT_EQ(literal("\xff\x41"), R"("\377A")");
  EXPECT_EQ(literal("what?"
                    "?/"),
            R"("what?\?/")");
  EXPECT_EQ(literal("?"
                    "?"
                    "?"),
            R"("?\?\?")");
}
