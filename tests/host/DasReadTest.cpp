// Replies to reads, to the byte.
#include "DasFixture.h"

namespace
{
using hosttest::readReply;
class DasRead : public hosttest::DasFixture
{
};
} // namespace

TEST_F(DasRead, UnindexedSchemaShowsBareColumns)
{
  update("Plain", "<A>1</A><B>2</B>");
  EXPECT_EQ(read("Plain"), "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"Plain\"><ReasonForMessage>"
                           "read_response</ReasonForMessage><A>1</A><B>2</B></Schema>");
}

TEST_F(DasRead, IndexedSchemaShowsEntriesWithTheIndexColumnFirst)
{
  update("Rows", "<Entry><Idx>2</Idx><B>y</B><A>x</A></Entry>");
  EXPECT_EQ(read("Rows"), readReply("Rows", "<Entry><Idx>1</Idx></Entry><Entry><Idx>2</Idx><A>x</A><B>y</B></Entry>"));
}

TEST_F(DasRead, CellsNeverWrittenAreLeftOut)
{
  EXPECT_EQ(read("Plain"), readReply("Plain", ""));
  update("Plain", "<B>2</B>");
  EXPECT_EQ(read("Plain"), readReply("Plain", "<B>2</B>"));
}

TEST_F(DasRead, EmptyCellIsShownEmpty)
{
  update("Plain", "<A></A>");
  EXPECT_EQ(read("Plain"), readReply("Plain", "<A></A>"));
}

TEST_F(DasRead, UnindexedColumnStandsAlone)
{
  update("Plain", "<A>1</A><B>2</B>");
  EXPECT_EQ(read("Plain", "<ResultCols>B</ResultCols>"), readReply("Plain", "<B>2</B>"));
}

TEST_F(DasRead, UnindexedColumnNeverWrittenIsNotThere)
{
  update("Plain", "<A>1</A>");
  EXPECT_EQ(read("Plain", "<ResultCols>B</ResultCols>"), readReply("Plain", ""));
}

TEST_F(DasRead, IndexedColumnComesFromAllRowsThatHaveIt)
{
  update("Rows", "<Entry><Idx>2</Idx><A>x</A></Entry><Entry><Idx>3</Idx><A></A></Entry>");
  EXPECT_EQ(read("Rows", "<ResultCols>A</ResultCols>"),
            readReply("Rows", "<Entry><Idx>2</Idx><A>x</A></Entry><Entry><Idx>3</Idx><A></A></Entry>"));
}

TEST_F(DasRead, CellComesWithItsIndexColumn)
{
  update("Rows", "<Entry><Idx>1</Idx><A>x</A><B>y</B></Entry><Entry><Idx>2</Idx><A>z</A></Entry>");
  EXPECT_EQ(read("Rows", "<ResultCols>A</ResultCols><Entry><Idx>2</Idx></Entry>"),
            readReply("Rows", "<Entry><Idx>2</Idx><A>z</A></Entry>"));
}

TEST_F(DasRead, CellNeverWrittenHasNoColumnAtAll)
{
  update("Rows", "<Entry><Idx>1</Idx><A>x</A></Entry>");
  EXPECT_EQ(read("Rows", "<ResultCols>B</ResultCols><Entry><Idx>1</Idx></Entry>"), readReply("Rows", ""));
}

TEST_F(DasRead, CellOfARowThatIsNotThereHasNoColumnAtAll)
{
  EXPECT_EQ(read("Rows", "<ResultCols>A</ResultCols><Entry><Idx>99</Idx></Entry>"), readReply("Rows", ""));
}

TEST_F(DasRead, IndexColumnItselfCanBeRead)
{
  EXPECT_EQ(read("Rows", "<ResultCols>Idx</ResultCols>"),
            readReply("Rows", "<Entry><Idx>1</Idx></Entry><Entry><Idx>2</Idx></Entry>"));
}

TEST_F(DasRead, RowsComeInTheOrderTheyWereMade)
{
  update("Rows", "<Entry><Idx>10</Idx><A>x</A></Entry><Entry><Idx>0</Idx><A>y</A></Entry>");
  update("Rows", "<Entry><Idx>1</Idx><A>z</A></Entry>");
  EXPECT_EQ(read("Rows", "<ResultCols>A</ResultCols>"),
            readReply("Rows", "<Entry><Idx>1</Idx><A>z</A></Entry><Entry><Idx>10</Idx><A>x</A></Entry>"
                              "<Entry><Idx>0</Idx><A>y</A></Entry>"));
}

TEST_F(DasRead, RowsComeInThatOrderHoweverTheDatabaseLooksThemUp)
{
  update("Rows", "<Entry><Idx>1</Idx><A>z</A></Entry><Entry><Idx>10</Idx><A>y</A></Entry>"
                 "<Entry><Idx>0</Idx><A>x</A></Entry>");
  for (const char* columns : {"A, Idx, B", "Idx, A, B"})
  {
    hosttest::runSql(file, "DROP INDEX IF EXISTS other; CREATE INDEX other ON Rows (" + std::string(columns) + ")");
    EXPECT_EQ(read("Rows", "<ResultCols>A</ResultCols>"),
              readReply("Rows", "<Entry><Idx>1</Idx><A>z</A></Entry><Entry><Idx>10</Idx><A>y</A></Entry>"
                                "<Entry><Idx>0</Idx><A>x</A></Entry>"))
        << columns;
    EXPECT_EQ(read("Rows"),
              readReply("Rows", "<Entry><Idx>1</Idx><A>z</A></Entry><Entry><Idx>2</Idx></Entry>"
                                "<Entry><Idx>10</Idx><A>y</A></Entry><Entry><Idx>0</Idx><A>x</A></Entry>"))
        << columns;
  }
}

TEST_F(DasRead, BlanksAndLineEndsBetweenElementsOfARequestDoNotMatter)
{
  update("Rows", "<Entry><Idx>1</Idx><A>x</A></Entry>");
  EXPECT_EQ(read("Rows", "\n  <ResultCols>A</ResultCols>\n  <Entry>\n <Idx>1</Idx> </Entry>\n"),
            readReply("Rows", "<Entry><Idx>1</Idx><A>x</A></Entry>"));
}

TEST_F(DasRead, IndexValuesAreComparedByteByByte)
{
  update("Rows",
         "<Entry><Idx>a</Idx><A>x</A></Entry><Entry><Idx>A</Idx><A>y</A></Entry><Entry><Idx>01</Idx><A>z</A></Entry>");
  const auto cell = [this](const std::string& index)
  { return read("Rows", "<ResultCols>A</ResultCols><Entry><Idx>" + index + "</Idx></Entry>"); };
  EXPECT_EQ(cell("A"), readReply("Rows", "<Entry><Idx>A</Idx><A>y</A></Entry>"));
  EXPECT_EQ(cell("a "), readReply("Rows", ""));
  EXPECT_EQ(cell("1"), readReply("Rows", ""));
}
