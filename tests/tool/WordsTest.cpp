// How a command line falls into words.
#include "base/Words.h"

#include <gtest/gtest.h>

using cli::splitWords;
using List = std::vector<std::string>;

TEST(Words, AreSeparatedByBlanksAndTabs)
{
  EXPECT_EQ(splitWords("  set a\tb  ").list, (List{"set", "a", "b"}));
}

TEST(Words, KeepBlanksBetweenQuotes)
{
  EXPECT_EQ(splitWords("set a \"b  c\" 'd e'").list, (List{"set", "a", "b  c", "d e"}));
}

TEST(Words, MayBeEmptyBetweenQuotes)
{
  EXPECT_EQ(splitWords("set a \"\" b ''").list, (List{"set", "a", "", "b", ""}));
}

TEST(Words, KnowEscapesBetweenDoubleQuotesAlone)
{
  EXPECT_EQ(splitWords(R"("a\"b\\c\d" 'a\"b' a\"b")").list, (List{R"(a"b\c\d)", R"(a\"b)", R"(a\b)"}));
}

TEST(Words, JoinWhatTouches)
{
  EXPECT_EQ(splitWords("a\"b c\"d").list, (List{"ab cd"}));
}

TEST(Words, NeedTheEndOfAQuote)
{
  EXPECT_NE(splitWords("set a \"b").problem, "");
  EXPECT_NE(splitWords("set a 'b").problem, "");
  EXPECT_EQ(splitWords("set a b").problem, "");
}

TEST(Words, AreNoneInACommentOrAnEmptyLine)
{
  EXPECT_TRUE(splitWords("  # set 'a").list.empty());
  EXPECT_EQ(splitWords("  # set 'a").problem, "");
  EXPECT_TRUE(splitWords(" \t").list.empty());
  EXPECT_EQ(splitWords("get #a").list, (List{"get", "#a"}));
}
