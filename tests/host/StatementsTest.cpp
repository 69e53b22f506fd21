// Which statements the database is asked for, and how often they are prepared.
#include "DasFixture.h"
#include "PrepareCounter.h"
#include "SyncCounter.h"

#include "host/DeviceLog.h"

namespace
{
using hosttest::preparedCount;
using hosttest::readReply;
using hosttest::updateReply;

/// A fixture whose tests name schemas that no other test of the program has.
class Statements : public hosttest::DasFixture
{
protected:
  void provisionWide(const std::string& schema, int columns)
  {
    std::vector<std::string> names(static_cast<std::size_t>(columns));
    for (std::size_t i = 0; i < names.size(); ++i)
      names[i] = "C" + std::to_string(i);
    das.provision({{schema, "", names, {}}});
  }
  std::string readColumn(const std::string& schema, const std::string& column)
  {
    return read(schema, "<ResultCols>" + column + "</ResultCols>");
  }
};
} // namespace

TEST_F(Statements, OneThatComesAgainIsPreparedOnce)
{
  das.provision({{"Again", "", {"A"}, {}}});
  for (int i = 0; i < 10; ++i)
    update("Again", "<A>" + std::to_string(i) + "</A>");
  EXPECT_EQ(preparedCount("INSERT INTO `Again`"), 1);
}

TEST_F(Statements, OneInUseStaysHoweverManyOthersCome)
{
  das.provision({{"Used", "", {"A"}, {}}});
  provisionWide("Others", 1900);
  for (int i = 0; i < 1900; ++i)
  {
    readColumn("Used", "A");
    readColumn("Others", "C" + std::to_string(i));
  }
  EXPECT_EQ(preparedCount("FROM `Used`"), 1);
}

TEST_F(Statements, TheLongestUnusedGoesFirst)
{
  provisionWide("Many", 1900);
  for (int i = 0; i < 1900; ++i)
    readColumn("Many", "C" + std::to_string(i));
  readColumn("Many", "C1899");
  readColumn("Many", "C1000");
  EXPECT_EQ(preparedCount("SELECT `C1899` FROM `Many`"), 1);
  EXPECT_EQ(preparedCount("SELECT `C1000` FROM `Many`"), 1);
  readColumn("Many", "C0");
  EXPECT_EQ(preparedCount("SELECT `C0` FROM `Many`"), 2);
}

TEST_F(Statements, FewLongOnesPushOutAsWell)
{
  for (int i = 0; i < 9; ++i)
    provisionWide("Long" + std::to_string(i), 1900);
  for (int i = 0; i < 9; ++i)
    read("Long" + std::to_string(i));
  read("Long8");
  EXPECT_EQ(preparedCount("FROM `Long8`"), 1);
  read("Long0");
  EXPECT_EQ(preparedCount("FROM `Long0`"), 2);
}

TEST_F(Statements, EntriesOfARowThatFollowEachOtherAreOne)
{
  das.provision({{"Entries", "Idx", {"A", "B", "C"}, {}}});
  update("Entries", "<Entry><Idx>1</Idx><A>a</A></Entry><Entry><Idx>1</Idx><B>b</B></Entry>"
                    "<Entry><Idx>2</Idx><C>c</C></Entry><Entry><Idx>1</Idx><A>later</A></Entry>"
                    "<Entry><Idx>1</Idx><A>last</A><C>c</C></Entry>");
  EXPECT_EQ(preparedCount("INSERT INTO `Entries` (`Idx`, `A`, `B`)"), 1);
  EXPECT_EQ(preparedCount("INSERT INTO `Entries`"), 3);
  EXPECT_EQ(read("Entries"), readReply("Entries", "<Entry><Idx>1</Idx><A>last</A><B>b</B><C>c</C></Entry>"
                                                  "<Entry><Idx>2</Idx><C>c</C></Entry>"));
}

TEST_F(Statements, WhatTheDatabaseRolledBackItselfIsNoFailureOfOurs)
{
  const auto log = folder / "log";
  host::openLog({log, 0, 6});
  {
    const hosttest::FailingSync broken;
    update("Rows", "<Entry><Idx>1</Idx><A>x</A></Entry><Entry><Idx>2</Idx><A>x</A></Entry>");
  }
  host::closeLog();
  EXPECT_FALSE(hosttest::holds(hosttest::contentOf(log), "rollback"));
  EXPECT_EQ(read("Rows"), readReply("Rows", "<Entry><Idx>1</Idx></Entry><Entry><Idx>2</Idx></Entry>"));
  EXPECT_EQ(update("Rows", "<Entry><Idx>1</Idx><A>y</A></Entry><Entry><Idx>2</Idx><A>y</A></Entry>"),
            updateReply("Rows"));
}
