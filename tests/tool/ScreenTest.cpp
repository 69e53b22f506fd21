// Texts fitted to the width of a screen.
#include "base/Screen.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/Shown.h"

using namespace cli;

TEST(Wrapping, BreaksBetweenWordsAlone)
{
  struct Row
  {
    std::string text;
    std::size_t columns;
    std::size_t indent;
    std::string lines;
  };
  const std::vector<Row> table = {
      {"one two three", 0, 0, "one two three"},
      {"one two three", 7, 0, "one two\nthree"},
      {"one two three", 6, 0, "one\ntwo\nthree"},
      {"one two three", 13, 0, "one two three"},
      {"one two three", 12, 0, "one two\nthree"},
      {"one two three", 9, 2, "one two\n  three"},
      {"one two three", 8, 2, "one\n  two\n  three"},
      {"incomprehensibilities a", 5, 0, "incomprehensibilities\na"},
      {"a incomprehensibilities", 5, 1, "a\n incomprehensibilities"},
      {"", 5, 0, ""},
  };
  for (const Row& row : table)
    EXPECT_EQ(wrapped(row.text, row.columns, row.indent), row.lines) << row.text << " in " << row.columns;
}

TEST(Wrapping, CountsColumnsAndNoBytes)
{
  useUtf8();
  EXPECT_EQ(wrapped("\xC3\xA4\xC3\xB6 \xC3\xBC\xC3\x9F x", 5, 0), "\xC3\xA4\xC3\xB6 \xC3\xBC\xC3\x9F\nx");
}

TEST(Rows, AreThoseOfTheScreenWithoutColours)
{
  const std::vector<std::pair<std::string, std::size_t>> table = {
      {"", 0},
      {"\n", 1},
      {"12345", 1},
      {"123456", 2},
      {"a\nb\n", 2},
      {"12345678901", 3},
      {"\x1b[1m12345\x1b[0m", 1},
      {"12345\n123456\n", 3},
  };
  for (const auto& [text, rows] : table)
    EXPECT_EQ(rowsOf(text, 5), rows) << text;
}
