// Replies in the order of the index are read without searching it. A search keeps what it looks for, and so asks for
// memory for a long name.
#include "ImportCursor.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CountingNew.h"

namespace
{

class ImportCursorCost : public ::testing::Test
{
protected:
  /// Columns with long names in each of these rows.
  void enter(std::size_t columnCount, const std::vector<std::string>& rows)
  {
    for (std::size_t i = 0; i < columnCount; ++i)
    {
      columns.push_back(std::string(100, '-') + static_cast<char>('A' + i));
      for (const std::string& row : rows)
        items[{columns.back(), row}] = nullptr;
    }
    cursor.start(&items);
  }

  /// How often the columns of this row ask for memory.
  std::size_t requestsFor(const std::string& row)
  {
    const std::size_t before = cost::heap.requests;
    cursor.startRow();
    for (const std::string& column : columns)
      cursor.find(column.c_str(), row);
    return cost::heap.requests - before;
  }

  std::vector<std::string> columns;
  sdm::ImportCursor::Items items;
  sdm::ImportCursor cursor;
};

// In order, and each so long that a search for it finds no room in what was searched for before.
const std::vector<std::string> rows = {"1", std::string(100, '2'), std::string(1000, '3'), std::string(10000, '4')};

TEST_F(ImportCursorCost, ColumnsWithoutRowsAreNotSearchedFor)
{
  enter(20, {""});
  EXPECT_EQ(requestsFor(""), 0U);
}

TEST_F(ImportCursorCost, OnlyTheFirstRowIsSearchedFor)
{
  enter(16, rows);
  EXPECT_EQ(requestsFor(rows[0]), 1U);
  EXPECT_EQ(requestsFor(rows[1]), 0U);
  EXPECT_EQ(requestsFor(rows[2]), 0U);
  EXPECT_EQ(requestsFor(rows[3]), 0U);
}

TEST_F(ImportCursorCost, ColumnsBeyondTheSixteenthAreSearchedForInEachRow)
{
  enter(17, rows);
  requestsFor(rows[0]);
  EXPECT_EQ(requestsFor(rows[1]), 1U);
}

TEST_F(ImportCursorCost, ARowThatWasSearchedForIsGoneOnFrom)
{
  enter(2, rows);
  requestsFor(rows[0]);
  EXPECT_EQ(requestsFor(rows[2]), 1U) << "a row is left out";
  EXPECT_EQ(requestsFor(rows[3]), 0U);
}

TEST_F(ImportCursorCost, AnUnknownColumnLeavesTheOthersWhereTheyAre)
{
  enter(3, rows);
  columns.insert(columns.begin() + 1, "0 unknown");
  requestsFor(rows[0]);
  EXPECT_EQ(requestsFor(rows[1]), 1U) << "the unknown one alone";
}

} // namespace
