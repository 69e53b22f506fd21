// Lines and columns of an item map file.
#include "ItemMapFile.h"

#include <filesystem>

#include "ManagerTest.h"

namespace
{

using sdm::ItemMapFile;
using unit::ElementsAre;
using unit::IsEmpty;
using unit::ManagerTest;
using Column = sdm::ItemMapColumn;
using Line = ItemMapFile::Line;

const std::string elevenCommas = ",,,,,,,,,,,";

class ItemMapFileTest : public ManagerTest
{
protected:
  /// The first columns of the lines that are items; "?" for a line that lacks a comma.
  std::vector<std::string> firstColumns(const std::string& text)
  {
    writeItemMap(text);
    ItemMapFile file("CommsSettings.csv");
    std::vector<std::string> found;
    for (Line line = file.next(); line == Line::item || line == Line::tooFewColumns; line = file.next())
      found.push_back(line == Line::item ? file.column(Column::rootId) : "?");
    return found;
  }

  /// The last column of the first item.
  std::string lastColumn(const std::string& text)
  {
    writeItemMap(text);
    ItemMapFile file("CommsSettings.csv");
    return file.next() == Line::item ? file.column(Column::dasEncrypted) : "no item";
  }
};

TEST_F(ItemMapFileTest, IsNotOpenWhenThereIsNoSuchFile)
{
  EXPECT_FALSE(ItemMapFile("CommsSettings.csv").isOpen());
}

TEST_F(ItemMapFileTest, TellsTheTwelveColumnsInOrder)
{
  writeItemMap("1,2,3,4,5,6,7,8,9,10,11,12\n");
  ItemMapFile file("CommsSettings.csv");
  ASSERT_TRUE(file.isOpen());
  ASSERT_EQ(file.next(), Line::item);
  const std::vector<Column> columns = {Column::rootId,
                                       Column::dasSchema,
                                       Column::dasItem,
                                       Column::dasIndexName,
                                       Column::dasIndexValue,
                                       Column::defaultValue,
                                       Column::setter,
                                       Column::getter,
                                       Column::userData,
                                       Column::isGroupItem,
                                       Column::alternativeDefault,
                                       Column::dasEncrypted};
  for (std::size_t i = 0; i < columns.size(); ++i)
    EXPECT_EQ(file.column(columns[i]), std::to_string(i + 1));
  EXPECT_EQ(file.next(), Line::end);
}

TEST_F(ItemMapFileTest, SkipsALineOfNineCharacters)
{
  EXPECT_THAT(firstColumns("123456789\n"), IsEmpty());
}

TEST_F(ItemMapFileTest, ReadsALineOfTenCharacters)
{
  EXPECT_THAT(firstColumns("1234567890\n"), ElementsAre("?"));
}

TEST_F(ItemMapFileTest, SkipsALastLineOfNineCharactersWithoutANewline)
{
  EXPECT_THAT(firstColumns("123456789"), IsEmpty());
}

TEST_F(ItemMapFileTest, ReadsALastLineOfTenCharactersWithoutANewline)
{
  EXPECT_THAT(firstColumns("1234567890"), ElementsAre("?"));
}

TEST_F(ItemMapFileTest, SkipsEmptyLines)
{
  EXPECT_THAT(firstColumns("\n\na" + elevenCommas + "\n\nb" + elevenCommas + "\n"), ElementsAre("a", "b"));
}

TEST_F(ItemMapFileTest, FindsNothingInAnEmptyFile)
{
  EXPECT_THAT(firstColumns(""), IsEmpty());
}

TEST_F(ItemMapFileTest, ReadsALastLineWithoutANewline)
{
  EXPECT_EQ(lastColumn("a" + elevenCommas + "true"), "true");
}

TEST_F(ItemMapFileTest, TakesTheNewlineOffTheLastColumn)
{
  EXPECT_EQ(lastColumn("a" + elevenCommas + "true\n"), "true");
}

TEST_F(ItemMapFileTest, KeepsACarriageReturnAtTheEndOfTheLastColumn)
{
  EXPECT_EQ(lastColumn("a" + elevenCommas + "true\r\n"), "true\r");
}

TEST_F(ItemMapFileTest, EndsTheLastColumnAtTheTwelfthComma)
{
  EXPECT_EQ(lastColumn("a" + elevenCommas + "true,more,and more\n"), "true");
}

TEST_F(ItemMapFileTest, ReadsAnItemWithElevenCommasButNotWithTen)
{
  EXPECT_THAT(firstColumns("a,,,,,,,,,,b\nc,,,,,,,,,,,\n"), ElementsAre("?", "c"));
}

TEST_F(ItemMapFileTest, KnowsNoComments)
{
  for (const std::string sign : {"#", "//", ";", "--", "%"})
    EXPECT_THAT(firstColumns(sign + "a" + elevenCommas + "\n" + sign + "only a remark\n"),
                ElementsAre(sign + "a", "?"));
}

TEST_F(ItemMapFileTest, KnowsNoQuoting)
{
  EXPECT_THAT(firstColumns("\"a,b\"" + elevenCommas + "\n"), ElementsAre("\"a"));
}

TEST_F(ItemMapFileTest, KeepsBlanksAndBytesOfAColumn)
{
  EXPECT_THAT(firstColumns(" a \t\xC3\xA4" + elevenCommas + "\n"), ElementsAre(" a \t\xC3\xA4"));
}

TEST_F(ItemMapFileTest, ReadsALineOfFiveHundredCharacters)
{
  const std::string flag(488, 'x');
  EXPECT_EQ(lastColumn("a" + elevenCommas + flag + "\n"), flag);
}

TEST_F(ItemMapFileTest, CutsALineAfterFiveHundredCharacters)
{
  EXPECT_EQ(lastColumn("a" + elevenCommas + std::string(489, 'x') + "\n"), std::string(488, 'x'));
}

TEST_F(ItemMapFileTest, ReadsTheRemainderOfALongLineAsAFurtherLine)
{
  const std::string full = "a" + elevenCommas + std::string(488, 'x');
  EXPECT_THAT(firstColumns(full + "rest" + elevenCommas + "\nb" + elevenCommas + "\n"), ElementsAre("a", "rest", "b"));
}

TEST_F(ItemMapFileTest, SkipsARemainderOfNineCharacters)
{
  const std::string full = "a" + elevenCommas + std::string(488, 'x');
  EXPECT_THAT(firstColumns(full + "123456789\nb" + elevenCommas + "\n"), ElementsAre("a", "b"));
  EXPECT_THAT(firstColumns(full + "1234567890\nb" + elevenCommas + "\n"), ElementsAre("a", "?", "b"));
}

TEST_F(ItemMapFileTest, EndsALineAtItsFirstNulByte)
{
  using namespace std::string_literals;
  EXPECT_EQ(lastColumn("a" + elevenCommas + "true\0junk,junk\n"s), "true");
  EXPECT_THAT(firstColumns("a" + elevenCommas + "\0,b\nb"s + elevenCommas + "\n"), ElementsAre("a", "b"));
}

TEST_F(ItemMapFileTest, SkipsALineWhoseNulByteLeavesNineCharacters)
{
  using namespace std::string_literals;
  EXPECT_THAT(firstColumns("123456789\0"s + elevenCommas + "\n"), IsEmpty());
  EXPECT_THAT(firstColumns("\0"s + elevenCommas + "\nb" + elevenCommas + "\n"), ElementsAre("b"));
}

TEST_F(ItemMapFileTest, MissesTheColumnsBehindANulByte)
{
  using namespace std::string_literals;
  EXPECT_THAT(firstColumns("a,,,,,,,,,,\0,\n"s), ElementsAre("?"));
}

TEST_F(ItemMapFileTest, CountsLinesAsTheyStandInTheFile)
{
  const std::string item = elevenCommas + "\n";
  writeItemMap("a" + item + "short\nb" + elevenCommas + std::string(490, 'x') + "\n\nc" + item);
  ItemMapFile file("CommsSettings.csv");
  std::vector<unsigned long> numbers;
  while (file.next() == Line::item)
    numbers.push_back(file.lineNumber());
  EXPECT_THAT(numbers, ElementsAre(1U, 3U, 5U));
}

TEST_F(ItemMapFileTest, CountsALineOfFiveHundredCharactersOnce)
{
  writeItemMap("a" + elevenCommas + std::string(488, 'x') + "\nb" + elevenCommas + "\n");
  ItemMapFile file("CommsSettings.csv");
  ASSERT_EQ(file.next(), Line::item);
  ASSERT_EQ(file.next(), Line::item);
  EXPECT_EQ(file.lineNumber(), 2U);
}

TEST_F(ItemMapFileTest, CountsALineThatANulByteEndsAsOneLine)
{
  using namespace std::string_literals;
  writeItemMap("a" + elevenCommas + "\0behind\nb"s + elevenCommas + "\n");
  ItemMapFile file("CommsSettings.csv");
  ASSERT_EQ(file.next(), Line::item);
  ASSERT_EQ(file.next(), Line::item);
  EXPECT_EQ(file.lineNumber(), 2U);
}

TEST_F(ItemMapFileTest, TellsWhichLinesAreLongerThanFiveHundredCharacters)
{
  struct Case
  {
    std::string text;
    std::vector<bool> tooLong;
  };
  const std::string full = "a" + elevenCommas + std::string(488, 'x');
  const std::string next = "b" + elevenCommas + "\n";
  const std::vector<Case> cases = {{full + "\n" + next, {false, false}},
                                   {full, {false}},
                                   {full + "y\n" + next, {true, false}},
                                   {full + "y", {true}},
                                   {full + next + next, {true, true, false}},
                                   {full + std::string(500, 'y') + next + next, {true, true, true, false}},
                                   {full + "\r\n" + next, {true, false}}};
  for (const Case& tested : cases)
  {
    writeItemMap(tested.text);
    ItemMapFile file("CommsSettings.csv");
    std::vector<bool> tooLong;
    for (Line line = file.next(); line == Line::item || line == Line::tooFewColumns; line = file.next())
      tooLong.push_back(file.lineIsTooLong());
    EXPECT_EQ(tooLong, tested.tooLong) << tested.text;
  }
}

TEST_F(ItemMapFileTest, TellsWhenTheFileCanNotBeRead)
{
  std::filesystem::create_directory("CommsSettings.csv");
  ItemMapFile file("CommsSettings.csv");
  ASSERT_TRUE(file.isOpen());
  EXPECT_EQ(file.next(), Line::readError);
}

} // namespace
