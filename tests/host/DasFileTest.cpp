// The database file: made, reopened, extended, broken.
#include <sqlite3.h>

#include <thread>

#include "DasFixture.h"
#include "FileCalls.h"
#include "SyncCounter.h"
#include "host/LocalMgmtStore.h"

namespace
{
using hosttest::errorOf;
using hosttest::holds;
using hosttest::readReply;
using hosttest::send;
using hosttest::updateReply;
using hosttest::updateRequest;
class DasFile : public hosttest::DasFixture
{
protected:
  std::string openingError(const std::filesystem::path& database)
  {
    return errorOf([&] { host::DataAccessService opened(database); });
  }
};

class DasReopened : public testing::Test
{
protected:
  void open(const std::string& name)
  {
    das.reset();
    das = std::make_unique<host::DataAccessService>(folder / name);
  }

  hosttest::TemporaryFolder folder;
  std::unique_ptr<host::DataAccessService> das;
};
} // namespace

TEST_F(DasReopened, KnowsItsSchemasWithoutProvisioning)
{
  open("das.db");
  das->provision({{"Rows", "Idx", {"b", "B"}, {"1"}}, {"Plain", "", {"A"}, {}}});
  send(*das, updateRequest("Rows", "<Entry><Idx>1</Idx><B>x</B><b>y</b></Entry>"));
  open("das.db");
  EXPECT_EQ(send(*das, hosttest::readRequest("Rows")),
            readReply("Rows", "<Entry><Idx>1</Idx><b>y</b><B>x</B></Entry>"));
  EXPECT_EQ(send(*das, updateRequest("Plain", "<A>1</A>")), updateReply("Plain"));
}

TEST_F(DasReopened, FindsItsFileWhateverTheName)
{
  for (const char* name :
       {"two words.db", "a'b.db", "quote\".db", "a=b.db", "db=x y.db", "\xC3\xA4.db", "%.db", "#?.db"})
  {
    open(name);
    das->provision({{"Plain", "", {"A"}, {}}});
    send(*das, updateRequest("Plain", "<A>1</A>"));
    das.reset();
    EXPECT_TRUE(std::filesystem::exists(folder / name)) << name;
    open(name);
    EXPECT_EQ(das->storedCell("Plain", "A", "", ""), "1") << name;
  }
}

TEST_F(DasFile, ProvisioningAgainKeepsWhatIsThere)
{
  update("Plain", "<A>1</A>");
  update("Rows", "<Entry><Idx>1</Idx><A>x</A></Entry>");
  das.provision({{"Plain", "", {"A", "B"}, {}}, {"Rows", "Idx", {"A", "B"}, {"1", "2"}}});
  EXPECT_EQ(read("Plain"), readReply("Plain", "<A>1</A>"));
  EXPECT_EQ(read("Rows"), readReply("Rows", "<Entry><Idx>1</Idx><A>x</A></Entry><Entry><Idx>2</Idx></Entry>"));
}

TEST_F(DasFile, ProvisioningAddsMissingColumnsAndRows)
{
  update("Rows", "<Entry><Idx>1</Idx><A>x</A></Entry>");
  das.provision({{"Rows", "Idx", {"New"}, {"3"}}});
  EXPECT_EQ(update("Rows", "<Entry><Idx>1</Idx><New>n</New></Entry>"), updateReply("Rows"));
  EXPECT_EQ(read("Rows"), readReply("Rows", "<Entry><Idx>1</Idx><A>x</A><New>n</New></Entry><Entry><Idx>2</Idx></Entry>"
                                            "<Entry><Idx>3</Idx></Entry>"));
}

TEST_F(DasFile, RepeatedColumnCountsOnce)
{
  das.provision({{"Twice", "Idx", {"A", "Idx", "A"}, {"1"}}});
  const std::vector<host::SchemaDefinition> schemas = das.schemas();
  EXPECT_EQ(schemas.back().columns, std::vector<std::string>{"A"});
  EXPECT_EQ(schemas.back().indexValues, std::vector<std::string>{"1"});
}

TEST_F(DasFile, TellsItsSchemasInTheOrderTheyWereMade)
{
  const std::vector<host::SchemaDefinition> schemas = das.schemas();
  ASSERT_EQ(schemas.size(), 2U);
  EXPECT_EQ(schemas[0].name, "Plain");
  EXPECT_EQ(schemas[0].indexColumn, "");
  EXPECT_EQ(schemas[0].columns, (std::vector<std::string>{"A", "B"}));
  EXPECT_EQ(schemas[1].indexColumn, "Idx");
  EXPECT_EQ(schemas[1].indexValues, (std::vector<std::string>{"1", "2"}));
}

TEST_F(DasFile, FailedProvisioningLeavesNothingBehind)
{
  EXPECT_EQ(errorOf(
                [&] {
                  das.provision({{"New", "", {"A"}, {}}, {"Rows", "Other", {"A"}, {}}});
                }),
            "schema 'Rows' is indexed by 'Idx' and cannot be by 'Other'");
  EXPECT_TRUE(holds(read("New"), "there is no schema"));
  EXPECT_EQ(hosttest::queryText(file, "SELECT count(*) FROM sqlite_master WHERE name = 'New'"), "0");
  das.provision({{"New", "", {"A"}, {}}});
  EXPECT_EQ(update("New", "<A>1</A>"), updateReply("New"));
}

TEST_F(DasFile, IndexValuesNeedAnIndexColumn)
{
  EXPECT_EQ(errorOf(
                [&] {
                  das.provision({{"New", "", {"A"}, {"1"}}});
                }),
            "schema 'New' has index values but no index column");
}

TEST_F(DasFile, ErrorOfOpeningNamesFileAndReason)
{
  const auto text = folder / "text.db";
  hosttest::writeFile(text, "This is a text that somebody put where the database belongs. " + std::string(2000, '.'));
  EXPECT_EQ(openingError(text), text.string() + ": file is not a database");
  EXPECT_TRUE(holds(openingError(folder.path()), folder.path().string() + ": "));
  EXPECT_TRUE(holds(openingError(folder / "missing" / "das.db"), "missing/das.db: "));
}

TEST_F(DasFile, TextFileIsLeftAsItWas)
{
  const auto text = folder / "text.db";
  hosttest::writeFile(text, "not a database");
  openingError(text);
  EXPECT_EQ(hosttest::contentOf(text), "not a database");
}

TEST_F(DasFile, DatabaseOfAnotherKindIsRefused)
{
  const auto other = folder / "ocms.db";
  {
    const host::LocalMgmtStore store(other);
  }
  EXPECT_EQ(openingError(other), other.string() + ": is a database of another kind");
}

TEST_F(DasFile, DatabaseErrorBecomesAReply)
{
  hosttest::runSql(file, "DROP TABLE Plain");
  for (const std::string& reply : {read("Plain"), update("Plain", "<A>hunter2</A>")})
  {
    EXPECT_TRUE(holds(reply, "<ReasonForMessage>error_response</ReasonForMessage><Error>")) << reply;
    EXPECT_FALSE(holds(reply, "hunter2")) << reply;
  }
  EXPECT_TRUE(holds(update("Plain", "<A>1</A>"), "no such table"));
  EXPECT_TRUE(holds(read("Rows"), "read_response"));
}

TEST_F(DasFile, ColumnThatWentAwayIsAnErrorNotItsName)
{
  update("Plain", "<A>1</A><B>2</B>");
  hosttest::runSql(file, "ALTER TABLE Plain DROP COLUMN B");
  EXPECT_EQ(read("Plain"), hosttest::errorReply("Plain", "the database failed; the log says why"));
}

TEST_F(DasFile, LockHeldByAnotherProgramIsAnErrorReplyAndPasses)
{
  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &raw), SQLITE_OK);
  const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> other(raw, &sqlite3_close);
  ASSERT_EQ(sqlite3_exec(raw, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_TRUE(holds(update("Plain", "<A>1</A>"), "database is locked"));
  sqlite3_exec(raw, "ROLLBACK", nullptr, nullptr, nullptr);
  EXPECT_EQ(update("Plain", "<A>1</A>"), updateReply("Plain"));
}

TEST_F(DasFile, UpdateReachesTheDiskBeforeItsReply)
{
  for (int i = 0; i < 5; ++i)
  {
    const int before = hosttest::syncCount();
    EXPECT_EQ(update("Plain", "<A>" + std::to_string(i) + "</A>"), updateReply("Plain"));
    EXPECT_GT(hosttest::syncCount(), before);
  }
}

TEST_F(DasFile, UpdateThatCannotReachTheDiskIsNotAnsweredAsDone)
{
  update("Plain", "<A>old</A>");
  {
    const hosttest::FailingSync broken;
    EXPECT_TRUE(holds(update("Plain", "<A>new</A>"), "error_response"));
  }
  EXPECT_EQ(read("Plain"), readReply("Plain", "<A>old</A>"));
  EXPECT_EQ(update("Plain", "<A>newer</A>"), updateReply("Plain"));
}

TEST_F(DasFile, ManyThreadsAtOnceLoseNothing)
{
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back(
        [this, t]
        {
          for (int i = 0; i < 50; ++i)
            update("Rows", "<Entry><Idx>" + std::to_string(t * 100 + i) + "</Idx><A>x</A></Entry>");
        });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(das.schemas().back().indexValues.size(), 200U);
}

TEST_F(DasFile, LockThatIsGivenBackWhileARequestWaitsIsNoError)
{
  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &raw), SQLITE_OK);
  const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> other(raw, &sqlite3_close);
  ASSERT_EQ(sqlite3_exec(raw, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  const hosttest::InPlaceOfSleep waiting([&] { sqlite3_exec(raw, "ROLLBACK", nullptr, nullptr, nullptr); });
  EXPECT_EQ(update("Plain", "<A>1</A>"), updateReply("Plain"));
}

TEST_F(DasFile, CopyHoldsWhatWasWrittenLast)
{
  for (const char* value : {"1", "2", "3"})
  {
    update("Plain", std::string("<A>") + value + "</A>");
    host::DataAccessService copy(file, host::Storage::copy);
    EXPECT_EQ(copy.storedCell("Plain", "A", "", ""), value);
  }
}

TEST_F(DasFile, ReadingLeavesNothingLocked)
{
  read("Rows");
  read("Plain", "<ResultCols>A</ResultCols>");
  das.storedCell("Rows", "A", "Idx", "1");
  das.schemas();
  read("Rows", "<ResultCols>nosuch</ResultCols>");
  update("Rows", "<Entry><nosuch>1</nosuch></Entry>");
  hosttest::runSql(file, "BEGIN EXCLUSIVE; ROLLBACK; PRAGMA wal_checkpoint(TRUNCATE)");
  EXPECT_EQ(std::filesystem::file_size(file.string() + "-wal"), 0U) << "nobody reads any more";
}

TEST_F(DasFile, TellsIndexValuesInTheOrderTheRowsWereMade)
{
  das.provision({{"Lines", "Idx", {"A", "B", "C"}, {"10", "9", "b", "a"}}});
  EXPECT_EQ(das.schemas().back().indexValues, (std::vector<std::string>{"10", "9", "b", "a"}));
  EXPECT_EQ(read("Lines", "<ResultCols>Idx</ResultCols>"),
            readReply("Lines", "<Entry><Idx>10</Idx></Entry><Entry><Idx>9</Idx></Entry><Entry><Idx>b</Idx></Entry>"
                               "<Entry><Idx>a</Idx></Entry>"));
}

TEST_F(DasFile, ProvisioningIsOneTransaction)
{
  hosttest::runSql(file, "CREATE TRIGGER stop BEFORE INSERT ON Rows WHEN NEW.Idx = '9' BEGIN SELECT "
                         "RAISE(FAIL, 'no'); END");
  EXPECT_NE(errorOf([&] { das.provision({{"New", "", {"A"}, {}}, {"Rows", "Idx", {"C"}, {"8", "9"}}}); }), "");
  EXPECT_EQ(das.schemas().size(), 2U);
  EXPECT_EQ(das.schemas().back().columns, (std::vector<std::string>{"A", "B"}));
  EXPECT_EQ(das.schemas().back().indexValues, (std::vector<std::string>{"1", "2"}));
  EXPECT_EQ(hosttest::queryText(file, "SELECT count(*) FROM \"~columns\" WHERE name = 'C'"), "0");
}

TEST_F(DasFile, CanBeMadeAfterADiskThatFailedAtAnySyncOfItsMaking)
{
  bool happened = true;
  for (int goodOnes = 0; happened; ++goodOnes)
  {
    const auto made = folder / ("made-" + std::to_string(goodOnes));
    {
      const hosttest::FailingSync broken(goodOnes);
      openingError(made);
      happened = broken.happened();
    }
    EXPECT_EQ(openingError(made), "") << "behind " << goodOnes << " good ones";
  }
}

TEST_F(DasFile, UpdateOfSeveralRowsThatCannotReachTheDiskLeavesNoneAndNothingOpen)
{
  const std::string rows = "<Entry><Idx>1</Idx><A>new</A></Entry><Entry><Idx>2</Idx><A>new</A></Entry>";
  {
    const hosttest::FailingSync broken;
    EXPECT_TRUE(holds(update("Rows", rows), "error_response"));
  }
  EXPECT_EQ(das.storedCell("Rows", "A", "Idx", "1"), std::nullopt);
  EXPECT_EQ(update("Rows", rows), updateReply("Rows"));
}
