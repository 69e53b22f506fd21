// Whatever a file holds: it is read as the library reads it, and mending comes to an end and keeps what it may not
// touch.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

#include "ItemMapFile.h"
#include "check/Linter.h"

namespace
{

using cli::MapText;
using cli::check::allRules;

/// Texts of maps, made of pieces that mean something to the reader or to a rule.
class AnyMap
{
public:
  std::string next()
  {
    static const std::vector<std::string> pieces = {",",
                                                    ",",
                                                    ",",
                                                    ",",
                                                    ",,,,,,,,,,,",
                                                    "\n",
                                                    "\n",
                                                    "\r\n",
                                                    "\r",
                                                    "a",
                                                    "Schema",
                                                    "S",
                                                    "name",
                                                    " ",
                                                    "\t",
                                                    "#",
                                                    "\"",
                                                    "true",
                                                    "True",
                                                    "1",
                                                    "no",
                                                    "&",
                                                    "<",
                                                    "]]>",
                                                    "a.b,S,C,,,1,s,g,",
                                                    "-2",
                                                    "\xc3\xa4",
                                                    "\xff\xfe",
                                                    "\xe4",
                                                    "\xef\xbb\xbf",
                                                    std::string(1, '\0'),
                                                    std::string(490, 'x'),
                                                    "rootId,dasSchema,c,,,,,,,,,\n"};
    std::string text;
    for (std::size_t n = random() % 60; n > 0; --n)
      text += pieces[random() % pieces.size()];
    return text;
  }

private:
  std::mt19937 random{20};
};

/// The columns of all items, as the library finds them in a file.
std::string readFromFile(const std::string& content)
{
  std::string name = testing::TempDir() + "any-map-XXXXXX";
  const int descriptor = ::mkstemp(name.data());
  EXPECT_EQ(::write(descriptor, content.data(), content.size()), static_cast<ssize_t>(content.size()));
  ::close(descriptor);
  sdm::ItemMapFile file(name.c_str());
  std::string columns;
  using Line = sdm::ItemMapFile::Line;
  for (Line line = file.next(); line != Line::end && line != Line::readError; line = file.next())
  {
    columns += line == Line::item ? "item" : "skipped";
    for (std::size_t i = 0; line == Line::item && i < cli::columnCount; ++i)
      columns.append("|").append(file.column(static_cast<cli::Column>(i)));
    columns += "\n";
  }
  ::unlink(name.c_str());
  return columns;
}

std::string readFromText(const MapText& map)
{
  std::string columns;
  for (const auto& line : map.lines())
  {
    if (line.kind == cli::MapLine::Kind::passedOver)
      continue;
    const bool item = line.kind == cli::MapLine::Kind::item;
    columns += item ? "item" : "skipped";
    for (std::size_t i = 0; item && i < cli::columnCount; ++i)
      columns.append("|").append(map.text(line.columns[i]));
    columns += "\n";
  }
  return columns;
}

} // namespace

TEST(AnyMap, IsReadAsTheLibraryReadsIt)
{
  AnyMap any;
  for (int i = 0; i < 500; ++i)
  {
    const std::string content = any.next();
    ASSERT_EQ(readFromText(MapText("", content)), readFromFile(content)) << testing::PrintToString(content);
  }
}

TEST(AnyMap, IsMendedOnceAndForAll)
{
  AnyMap any;
  for (int i = 0; i < 500; ++i)
  {
    const std::string content = any.next();
    const auto once = cli::check::mend(MapText("", content), allRules());
    for (const auto& finding : cli::check::findingsOf(MapText("", once.content), allRules()))
      ASSERT_TRUE(finding.fix.empty()) << finding.rule->id << " " << testing::PrintToString(content);
  }
}

TEST(AnyMap, HasFindingsWithinTheFile)
{
  AnyMap any;
  for (int i = 0; i < 500; ++i)
  {
    const MapText map("", any.next());
    for (const auto& finding : cli::check::findingsOf(map, allRules()))
    {
      ASSERT_LE(finding.place.begin, finding.place.end);
      ASSERT_LE(finding.place.end, map.bytes().size());
    }
  }
}

TEST(Mending, KeepsEncryptionThatACommaHidFromTheCarriageReturn)
{
  const auto made =
      cli::check::mend(MapText("", "a.pin,Sch,Col,,,,setB,,,,,true,\r\n"), {cli::check::findRule("trailing-commas")});
  EXPECT_EQ(made.content, "a.pin,Sch,Col,,,,setB,,,,,true\n");
}

TEST(Mending, TakesCareOfWhatOneChangeUncovers)
{
  const auto made = cli::check::mend(
      MapText("", "\xef\xbb\xbfrootId,dasSchema,dasItem,,,,,,,,,\r\na.pin,Sch,Col,,,,setB,,,,, True\r\n"), allRules());
  EXPECT_EQ(made.content, "a.pin,Sch,Col,,,,setB,,,,,true\n");
}

namespace
{
std::vector<std::string> foundIn(const std::string& content)
{
  std::vector<std::string> ids;
  for (const auto& finding : cli::check::findingsOf(MapText("", content), allRules()))
    ids.emplace_back(finding.rule->id);
  return ids;
}
} // namespace

TEST(Linting, OfUtf16FindsThatItIsAndNoItemsBeside)
{
  using std::string_literals::operator""s;
  using Ids = std::vector<std::string>;
  EXPECT_EQ(foundIn("\xff\xfe"s + "a\0"s), Ids{"utf-16"});
  EXPECT_EQ(foundIn("\xfe\xff"s + "\0a"s), (Ids{"utf-16"}));
  const std::string item = "a.pin,Sch,Col,,,,setB,getB,,,,\n";
  EXPECT_EQ(foundIn("\xff" + item), foundIn("\xfe" + item)) << "one byte of the mark is none";
  for (const std::string& start : {"\xff"s, "\xfe"s, "\xff\xff"s, ""s})
    for (const std::string& id : foundIn(start + item))
      EXPECT_NE(id, "utf-16");
}

TEST(Linting, OfCarriageReturnsTellsOfTheFlagAndOfTheOtherLinesApart)
{
  const std::string flagged = "a.pin,Sch,Pin,,,,setB,,,,,true";
  const std::string plain = "a.vol,Sch,Vol,,,1,setC,getC,,,,";
  const auto count = [](const std::string& content, const std::string& id)
  {
    const std::vector<std::string> ids = foundIn(content);
    return std::count(ids.begin(), ids.end(), id);
  };
  EXPECT_EQ(count(flagged + "\r\n" + plain + "\n", "carriage-return"), 1);
  EXPECT_EQ(count(flagged + "\r\n" + plain + "\n", "crlf-line-ends"), 0);
  EXPECT_EQ(count(flagged + "\r\n" + plain + "\r\n", "carriage-return"), 1);
  EXPECT_EQ(count(flagged + "\r\n" + plain + "\r\n", "crlf-line-ends"), 1);
  EXPECT_EQ(count(flagged + "\n" + plain + "\r\n", "carriage-return"), 0);
  EXPECT_EQ(count(flagged + "\n" + plain + "\r\n", "crlf-line-ends"), 1);
  EXPECT_EQ(cli::check::mend(MapText("", flagged + "\r\n" + plain + "\r\n"), allRules()).content,
            flagged + "\n" + plain + "\n");
}
