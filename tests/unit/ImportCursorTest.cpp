// Finding the items of a reply in whatever order it names them.
#include "ImportCursor.h"

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "ServiceDataManagerIfc.h"

namespace
{

using Place = std::pair<std::string, std::string>;

class ImportCursorTest : public ::testing::Test
{
protected:
  void enter(const std::vector<std::string>& columns, const std::vector<std::string>& rows)
  {
    for (const std::string& column : columns)
    {
      for (const std::string& row : rows)
      {
        owned.push_back(std::make_unique<ManagedDataItem>());
        items[{column, row}] = owned.back().get();
      }
    }
  }

  /// Asks for the places of one row after the other, and expects of each what the index has there.
  void expectFound(const std::vector<std::vector<Place>>& reply)
  {
    cursor.start(&items);
    for (const std::vector<Place>& row : reply)
    {
      cursor.startRow();
      for (const auto& [column, index] : row)
      {
        const auto expected = items.find({column, index});
        EXPECT_EQ(cursor.find(column.c_str(), index), expected == items.end() ? nullptr : expected->second)
            << column << " " << index;
      }
    }
  }

  sdm::ImportCursor::Items items;
  sdm::ImportCursor cursor;

private:
  std::vector<std::unique_ptr<ManagedDataItem>> owned;
};

TEST_F(ImportCursorTest, FindsNothingBeforeItIsStartedAndWhereThereAreNoItems)
{
  EXPECT_EQ(cursor.find("A", ""), nullptr);
  cursor.start(nullptr);
  EXPECT_EQ(cursor.find("A", ""), nullptr);
  expectFound({{{"A", ""}, {"B", ""}}, {{"A", "1"}}});
}

TEST_F(ImportCursorTest, FindsColumnsWithoutRowsInAnyOrder)
{
  enter({"A", "B", "C", "D"}, {""});
  expectFound({{{"A", ""}, {"B", ""}, {"C", ""}, {"D", ""}}});
  expectFound({{{"D", ""}, {"C", ""}, {"B", ""}, {"A", ""}}});
  expectFound({{{"B", ""}, {"B", ""}, {"D", ""}, {"C", ""}}});
}

TEST_F(ImportCursorTest, FindsRowsInAnyOrder)
{
  enter({"A", "B"}, {"1", "2", "3"});
  expectFound({{{"A", "1"}, {"B", "1"}}, {{"A", "2"}, {"B", "2"}}, {{"A", "3"}, {"B", "3"}}});
  expectFound({{{"B", "3"}, {"A", "3"}}, {{"A", "1"}, {"B", "1"}}, {{"B", "2"}, {"A", "2"}}});
}

TEST_F(ImportCursorTest, FindsColumnsBehindUnknownOnes)
{
  enter({"A", "C"}, {"1", "3"});
  expectFound({{{"0", "1"}, {"A", "1"}, {"B", "1"}, {"C", "1"}, {"D", "1"}},
               {{"0", "2"}, {"A", "2"}, {"B", "2"}, {"C", "2"}, {"D", "2"}},
               {{"0", "3"}, {"A", "3"}, {"B", "3"}, {"C", "3"}, {"D", "3"}}});
}

TEST_F(ImportCursorTest, FindsColumnsOfRowsThatLackSomeOrHaveMore)
{
  enter({"A", "B", "C"}, {"1", "2", "3", "4"});
  expectFound({{{"A", "1"}, {"C", "1"}},
               {{"C", "2"}},
               {},
               {{"A", "3"}, {"B", "3"}, {"C", "3"}},
               {{"B", "4"}, {"A", "4"}, {"B", "4"}}});
}

TEST_F(ImportCursorTest, FindsMoreColumnsThanItHasRoomFor)
{
  std::vector<std::string> columns;
  std::vector<std::vector<Place>> reply(3);
  for (char c = 'A'; c <= 'Z'; ++c)
  {
    columns.emplace_back(1, c);
    for (int row = 0; row < 3; ++row)
      reply[static_cast<std::size_t>(row)].emplace_back(columns.back(), std::to_string(row));
  }
  enter(columns, {"0", "1", "2"});
  expectFound(reply);
}

TEST_F(ImportCursorTest, ForgetsTheSchemaOfBeforeWithEachStart)
{
  enter({"A", "B"}, {"1", "2", "3"});
  expectFound({{{"A", "1"}, {"B", "1"}}});
  const sdm::ImportCursor::Items others = {{{"A", "1"}, nullptr}, {{"A", "2"}, nullptr}, {{"B", "2"}, nullptr}};
  cursor.start(&others);
  EXPECT_EQ(cursor.find("A", "1"), nullptr) << "no row has been started";
  cursor.startRow();
  EXPECT_EQ(cursor.find("A", "2"), nullptr);
  EXPECT_EQ(cursor.find("B", "2"), nullptr);
  cursor.start(nullptr);
  EXPECT_EQ(cursor.find("A", "3"), nullptr);
}

} // namespace
