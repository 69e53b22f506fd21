// Lines, columns and places, as the library's reader makes them.
#include <gtest/gtest.h>

#include "map/MapText.h"

namespace
{

using namespace std::string_literals;
using cli::Column;
using cli::MapText;
using Kind = cli::MapLine::Kind;

cli::Position positionOf(const MapText& map, std::uint32_t byte)
{
  return cli::Positions(map).of(byte);
}

} // namespace

TEST(MapText, AnEmptyFileHasNoLines)
{
  EXPECT_TRUE(MapText("", "").lines().empty());
}

TEST(MapText, TellsItemsFromSkippedAndPassedOverLines)
{
  const MapText map("", "short\na,b,c,d,e,f,g,h,i,j,k,l\nten bytes,\n\n");
  ASSERT_EQ(map.lines().size(), 4U);
  EXPECT_EQ(map.lines()[0].kind, Kind::passedOver);
  EXPECT_EQ(map.lines()[1].kind, Kind::item);
  EXPECT_EQ(map.lines()[2].kind, Kind::tooFewColumns);
  EXPECT_EQ(map.lines()[3].kind, Kind::passedOver);
  EXPECT_EQ(map.lines()[3].number, 4U);
}

TEST(MapText, FindsEachColumnInTheFile)
{
  const MapText map("", "line one\na,bb,,d,e,f,g,h,i,j,k,last\n");
  const auto& item = map.lines().at(1);
  EXPECT_EQ(map.text(item, Column::rootId), "a");
  EXPECT_EQ(map.text(item, Column::dasSchema), "bb");
  EXPECT_EQ(item.at(Column::dasItem).begin, 14U);
  EXPECT_TRUE(item.at(Column::dasItem).empty());
  EXPECT_EQ(map.text(item, Column::dasEncrypted), "last");
}

TEST(MapText, KeepsWhatIsBehindTheTwelfthComma)
{
  const MapText map("", "a,b,c,d,e,f,g,h,i,j,k,l,m,n\n");
  EXPECT_EQ(map.text(map.lines().at(0).surplus), ",m,n");
  EXPECT_EQ(map.text(map.lines().at(0), Column::dasEncrypted), "l");
}

TEST(MapText, CutsALineWhereTheLibraryDoes)
{
  const MapText map("", std::string(500, 'x') + std::string(12, ',') + "\nnext\n");
  ASSERT_EQ(map.lines().size(), 3U);
  EXPECT_EQ(map.lines()[0].place.end, 500U);
  EXPECT_TRUE(map.lines()[1].continued);
  EXPECT_EQ(map.lines()[1].kind, Kind::item);
  EXPECT_EQ(map.lines()[1].number, 1U);
  EXPECT_EQ(map.lines()[2].number, 2U);
}

TEST(MapText, ALineOfFiveHundredBytesIsOneLine)
{
  const MapText map("", std::string(500, 'x') + "\nnext\n");
  ASSERT_EQ(map.lines().size(), 2U);
  EXPECT_EQ(map.lines()[1].number, 2U);
}

TEST(MapText, EndsColumnsAtANulByte)
{
  const MapText map("", "a,b,c,d,e,f,g,h,i,j,k,l\0m,n\nx\n"s);
  EXPECT_EQ(map.lines().at(0).nul, 23U);
  EXPECT_EQ(map.text(map.lines()[0], Column::dasEncrypted), "l");
  EXPECT_TRUE(map.lines()[0].surplus.empty());
  EXPECT_EQ(map.lines().at(1).number, 2U);
}

TEST(MapText, CountsCharactersNotBytes)
{
  const MapText map("", "x\n\xc3\xa4\xe2\x82\xac\xff!\n");
  EXPECT_EQ(positionOf(map, 2).line, 2U);
  EXPECT_EQ(positionOf(map, 2).column, 1U);
  EXPECT_EQ(positionOf(map, 4).column, 2U);
  EXPECT_EQ(positionOf(map, 8).column, 4U);
  EXPECT_EQ(positionOf(map, 9).column, 5U);
}

TEST(MapText, KnowsTheWholeLineAroundAByte)
{
  const MapText map("", "one\ntwo\nthree");
  EXPECT_EQ(map.text(map.wholeLine(0)), "one");
  EXPECT_EQ(map.text(map.wholeLine(5)), "two");
  EXPECT_EQ(map.text(map.wholeLine(13)), "three");
}
