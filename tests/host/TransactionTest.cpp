// What stays when a transaction fails at one of its statements, and what others can do while it goes on.
#include <gtest/gtest.h>

#include <memory>

#include "HostTesting.h"
#include "PrepareCounter.h"
#include "host/DataAccessService.h"
#include "host/LocalMgmtStore.h"

namespace
{
using hosttest::AtStatement;
using hosttest::errorOf;
using hosttest::errorReply;
using hosttest::readReply;
using hosttest::updateReply;

const char* const twoRows = "<Entry><Idx>1</Idx><A>x</A></Entry><Entry><Idx>2</Idx><A>y</A></Entry>";

/// A database that was made before, so that none of its service's statements is prepared.
class TransactionOfDas : public testing::Test
{
protected:
  TransactionOfDas()
  {
    host::DataAccessService(file).provision({{"Rows", "Idx", {"A"}, {"1", "2"}}});
    das = std::make_unique<host::DataAccessService>(file);
  }
  std::string read(const std::string& schema)
  {
    return hosttest::send(*das, hosttest::readRequest(schema));
  }
  std::string update(const std::string& rows)
  {
    return hosttest::send(*das, hosttest::updateRequest("Rows", rows));
  }

  hosttest::TemporaryFolder folder;
  const std::filesystem::path file = folder / "das.db";
  std::unique_ptr<host::DataAccessService> das;
};

/// Either kind of database that a device has.
class NewDatabase : public testing::TestWithParam<const char*>
{
protected:
  static void open(const std::filesystem::path& file)
  {
    if (file.filename() == "das.db")
      host::DataAccessService{file}.provision({{"New", "", {"A"}, {}}});
    else
      host::LocalMgmtStore{file}.change("item", "value");
  }
};
} // namespace

TEST_F(TransactionOfDas, SchemaWhoseCommitFailsIsUnknownAndCanBeProvisionedAgain)
{
  {
    const AtStatement failing("COMMIT");
    EXPECT_NE(errorOf([&] { das->provision({{"New", "", {"A"}, {}}}); }), "");
    EXPECT_TRUE(failing.happened());
  }
  EXPECT_EQ(read("New"), errorReply("New", "there is no schema &apos;New&apos;"));
  EXPECT_EQ(das->schemas().size(), 1U);
  das->provision({{"New", "", {"A"}, {}}});
  EXPECT_EQ(read("New"), readReply("New", ""));
}

TEST_F(TransactionOfDas, UpdateWhoseCommitFailsIsUndoneAndTheNextOneIsTaken)
{
  {
    const AtStatement failing("COMMIT");
    EXPECT_NE(update(twoRows), updateReply("Rows"));
    EXPECT_TRUE(failing.happened());
  }
  EXPECT_EQ(read("Rows"), readReply("Rows", "<Entry><Idx>1</Idx></Entry><Entry><Idx>2</Idx></Entry>"));
  EXPECT_EQ(update(twoRows), updateReply("Rows"));
}

TEST_F(TransactionOfDas, NobodyElseWritesFromItsBeginOn)
{
  const AtStatement meanwhile("INSERT INTO `Rows`",
                              [this] { EXPECT_THROW(hosttest::runSql(file, "BEGIN IMMEDIATE"), std::runtime_error); });
  EXPECT_EQ(update(twoRows), updateReply("Rows"));
  EXPECT_TRUE(meanwhile.happened());
}

TEST_P(NewDatabase, ThatCouldNotBeLaidOutOrMarkedIsMadeByTheNextStart)
{
  for (const char* statement : {"CREATE TABLE", "PRAGMA application_id =", "COMMIT"})
  {
    const hosttest::TemporaryFolder folder;
    {
      const AtStatement failing(statement);
      EXPECT_NE(errorOf([&] { open(folder / GetParam()); }), "") << statement;
      EXPECT_TRUE(failing.happened()) << statement;
    }
    EXPECT_EQ(errorOf([&] { open(folder / GetParam()); }), "") << statement;
  }
}

INSTANTIATE_TEST_SUITE_P(OfEitherKind, NewDatabase, testing::Values("das.db", "ocms.db"));
