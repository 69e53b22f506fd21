// Updates: whole requests or nothing of them.
#include "DasFixture.h"

namespace
{
using hosttest::readReply;
using hosttest::updateReply;
class DasUpdate : public hosttest::DasFixture
{
protected:
  std::optional<std::string> plain(const std::string& column)
  {
    return das.storedCell("Plain", column, "", "");
  }
  std::optional<std::string> row(const std::string& index, const std::string& column)
  {
    return das.storedCell("Rows", column, "Idx", index);
  }
};
} // namespace

TEST_F(DasUpdate, IsAnsweredWithoutColumns)
{
  EXPECT_EQ(update("Plain", "<A>1</A>"), updateReply("Plain"));
}

TEST_F(DasUpdate, WritesAllCellsOfARequest)
{
  update("Plain", "<A>1</A><B>2</B>");
  EXPECT_EQ(plain("A"), "1");
  EXPECT_EQ(plain("B"), "2");
}

TEST_F(DasUpdate, LeavesOtherCellsAlone)
{
  update("Plain", "<A>1</A><B>2</B>");
  update("Plain", "<B>3</B>");
  EXPECT_EQ(plain("A"), "1");
  EXPECT_EQ(plain("B"), "3");
}

TEST_F(DasUpdate, EntryChangesItsRow)
{
  update("Rows", "<Entry><Idx>1</Idx><A>x</A></Entry>");
  update("Rows", "<Entry><Idx>1</Idx><B>y</B></Entry>");
  EXPECT_EQ(row("1", "A"), "x");
  EXPECT_EQ(row("1", "B"), "y");
  EXPECT_EQ(row("2", "A"), std::nullopt);
}

TEST_F(DasUpdate, EntryMakesARowThatIsMissing)
{
  EXPECT_EQ(update("Rows", "<Entry><Idx>new</Idx><A>x</A></Entry>"), updateReply("Rows"));
  EXPECT_EQ(row("new", "A"), "x");
}

TEST_F(DasUpdate, OfACellWrittenTwiceTheLaterValueStays)
{
  EXPECT_EQ(update("Plain", "<A>1</A><B>b</B><A>2</A>"), updateReply("Plain"));
  EXPECT_EQ(plain("A"), "2");
  EXPECT_EQ(plain("B"), "b");
  update("Rows", "<Entry><Idx>1</Idx><A>x</A></Entry><Entry><Idx>1</Idx><A>y</A></Entry>");
  EXPECT_EQ(row("1", "A"), "y");
}

TEST_F(DasUpdate, EmptyTextIsAValue)
{
  update("Plain", "<A></A>");
  EXPECT_EQ(plain("A"), "");
  EXPECT_EQ(plain("B"), std::nullopt);
}

TEST_F(DasUpdate, LaterMistakeUndoesTheEarlierEntries)
{
  update("Rows", "<Entry><Idx>1</Idx><A>old</A></Entry>");
  update("Rows", "<Entry><Idx>1</Idx><A>new</A></Entry><Entry><Idx>7</Idx><A>x</A></Entry>"
                 "<Entry><Idx>2</Idx><Nowhere>x</Nowhere></Entry>");
  EXPECT_EQ(row("1", "A"), "old");
  EXPECT_EQ(row("7", "A"), std::nullopt);
  EXPECT_FALSE(hosttest::holds(read("Rows"), "<Idx>7</Idx>"));
}

TEST_F(DasUpdate, LaterMistakeUndoesTheEarlierCells)
{
  update("Plain", "<A>old</A>");
  update("Plain", "<A>new</A><Nowhere>x</Nowhere>");
  EXPECT_EQ(plain("A"), "old");
}

TEST_F(DasUpdate, GoesOnAfterAMistake)
{
  update("Rows", "<Entry><Idx>1</Idx><A>x</A></Entry><Entry><Wrong>1</Wrong><A>x</A></Entry>");
  EXPECT_EQ(update("Rows", "<Entry><Idx>1</Idx><A>x</A></Entry>"), updateReply("Rows"));
  EXPECT_EQ(row("1", "A"), "x");
}

TEST_F(DasUpdate, LargeRequestIsWrittenWhole)
{
  std::string entries;
  for (int i = 0; i < 3000; ++i)
    entries += "<Entry><Idx>" + std::to_string(i) + "</Idx><A>" + std::to_string(i * 7) + "</A></Entry>";
  EXPECT_EQ(update("Rows", entries), updateReply("Rows"));
  EXPECT_EQ(row("2999", "A"), std::to_string(2999 * 7));
}

TEST_F(DasUpdate, StoredCellOfWhatDoesNotExistIsNone)
{
  update("Plain", "<A>1</A>");
  update("Rows", "<Entry><Idx>1</Idx><A>x</A></Entry>");
  EXPECT_EQ(das.storedCell("Nowhere", "A", "", ""), std::nullopt);
  EXPECT_EQ(plain("Nowhere"), std::nullopt);
  EXPECT_EQ(das.storedCell("Plain", "A", "Idx", "1"), std::nullopt);
  EXPECT_EQ(das.storedCell("Rows", "A", "", ""), std::nullopt);
  EXPECT_EQ(das.storedCell("Rows", "A", "Other", "1"), std::nullopt);
}
