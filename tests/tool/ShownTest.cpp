// What may reach a terminal.
#include "base/Shown.h"

#include <gtest/gtest.h>

using namespace cli;

namespace
{

class ShownTest : public testing::Test
{
protected:
  ShownTest()
  {
    useUtf8();
  }
};

} // namespace

TEST_F(ShownTest, KeepsOrdinaryTextOfEveryLanguage)
{
  EXPECT_EQ(shown("Zürich, 東京 & <b>"), "Zürich, 東京 & <b>");
}

TEST_F(ShownTest, EscapesControlCharacters)
{
  EXPECT_EQ(shown("\x1b[31m"), "\\x1b[31m");
  EXPECT_EQ(shown("a\nb\tc\rd\x7f"), "a\\nb\\tc\\x0dd\\x7f");
  EXPECT_EQ(shown(std::string("a\0b", 3)), "a\\x00b");
}

TEST_F(ShownTest, EscapesControlCharactersBeyondAscii)
{
  EXPECT_EQ(shown("\xc2\x9b"
                  "31m"),
            "\\xc2\\x9b31m");
}

TEST_F(ShownTest, EscapesMarksOfWritingDirection)
{
  EXPECT_EQ(shown("\xe2\x80\xae"), "\\xe2\\x80\\xae");
}

TEST_F(ShownTest, EscapesWhatIsNoUtf8)
{
  EXPECT_EQ(shown("a\xff"
                  "b\xc3"),
            "a\\xffb\\xc3");
}

TEST_F(ShownTest, DoublesBackslashesSoThatNothingHasTwoMeanings)
{
  EXPECT_EQ(shown("\\x1b"), "\\\\x1b");
}

TEST_F(ShownTest, QuotesValuesThatAreEmptyOrHaveBlanks)
{
  EXPECT_EQ(shownValue(""), "\"\"");
  EXPECT_EQ(shownValue("a b"), "\"a b\"");
  EXPECT_EQ(shownValue("ab"), "ab");
}

TEST_F(ShownTest, CountsColumnsAndNotBytes)
{
  EXPECT_EQ(width("Zürich"), 6U);
  EXPECT_EQ(width("東京"), 4U);
  EXPECT_EQ(padded("ü", 3), "ü  ");
}

TEST_F(ShownTest, ClipsBetweenCharacters)
{
  EXPECT_EQ(clipped("abcdef", 6), "abcdef");
  EXPECT_EQ(clipped("abcdef", 4), "abc…");
  EXPECT_EQ(clipped("東京都", 4), "東…");
}
