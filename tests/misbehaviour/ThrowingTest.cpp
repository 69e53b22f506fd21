// Every call of every operation throws, at every position, an exception and an int.
#include <map>
#include <set>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Rows.h"
#include "Stage.h"

namespace
{

using misbehaviour::Row;
using misbehaviour::Stage;
using misbehaviour::Thrown;
using ::testing::IsEmpty;

/// "exception TEXT", "int NUMBER", or "" when nothing came out of it.
std::string thrownBy(const std::function<void()>& call)
{
  try
  {
    call();
  }
  catch (const std::exception& exception)
  {
    return std::string("exception ") + exception.what();
  }
  catch (int number)
  {
    return "int " + std::to_string(number);
  }
  return "";
}

/// Groups of which the validator got a value, and was not told afterwards to forget it.
std::set<std::string> rememberedGroups()
{
  std::set<std::string> groups;
  for (const std::string& line : recording::trace())
  {
    if (line.rfind("set d(", 0) == 0)
      groups.insert("good");
    if (line.rfind("set e(", 0) == 0)
      groups.insert("bad");
    if (line.rfind("clearGroup(\"", 0) == 0)
      groups.erase(line.substr(12, line.size() - 14));
  }
  return groups;
}

/// Changes that were sent are told to the security log, or kept for it; others are not.
void expectNoRecordIsLost(const Stage& stage)
{
  bool sent = false;
  for (const std::string& request : recording::traceOf("sendRequest"))
    sent = sent || request.find("update_request") != std::string::npos;
  const std::size_t known = recording::traceOf("logSecurityEvent").size() + stage.access.pendingRecords.size();
  if (sent)
    EXPECT_EQ(known, 1U);
  else
    EXPECT_THAT(stage.access.pendingRecords, IsEmpty());
}

class Throwing : public ::testing::TestWithParam<Row>
{
protected:
  /// Runs the row's operation with this going wrong at one position, and then everything.
  void throwAt(std::size_t position, const std::function<void()>& action, const std::string& expected)
  {
    const Row& row = GetParam();
    const misbehaviour::Operation& operation = misbehaviour::operation(row.operation);
    Stage stage(operation.loaded);
    misbehaviour::inCall(row.call, position, action);
    const std::string came = thrownBy([&] { operation.run(stage); });
    recording::behaviour().everyCall = nullptr;
    EXPECT_EQ(came, row.thrown == Thrown::reachesTheCaller ? expected : "");
    ASSERT_EQ(recording::behaviour().lockDepth, 0) << "the lock is given back";
    if (stage.manager == nullptr)
      return;
    EXPECT_TRUE(stage.lockIsFree());
    EXPECT_EQ(stage.access.runningOperations, 0);
    EXPECT_EQ(stage.access.reply.parser, nullptr);
    EXPECT_TRUE(stage.access.reply.failure == nullptr);
    EXPECT_THAT(stage.access.groups, IsEmpty());
    // A reset hands its values to the service alone: no group is judged, nor forgotten.
    if (row.operation != std::string("setDefaultUserData"))
    {
      EXPECT_THAT(rememberedGroups(), IsEmpty());
    }
    if (row.operation == std::string("setData") || row.operation == std::string("reloadUserData"))
      expectNoRecordIsLost(stage);
    EXPECT_EQ(stage.afterwards(operation.startsOver), misbehaviour::undisturbed(operation.startsOver));
  }
};

TEST_P(Throwing, ReachesTheCallerAndLeavesTheManagerAsGoodAsNew)
{
  for (std::size_t position = 1; position <= GetParam().times; ++position)
  {
    SCOPED_TRACE("position " + std::to_string(position));
    throwAt(
        position, [] { throw std::runtime_error("thrown"); }, "exception thrown");
    throwAt(
        position, [] { throw 42; }, "int 42");
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, Throwing, ::testing::ValuesIn(misbehaviour::rows()),
                         [](const auto& tested) { return tested.param.name(); });

TEST(RowsTest, NameEveryCallOfEveryOperationAndHowOftenItIsMade)
{
  std::map<std::string, std::size_t> expected;
  std::map<std::string, std::size_t> made;
  for (const Row& row : misbehaviour::rows())
    expected[row.name()] = row.times;
  for (const misbehaviour::Operation& operation : misbehaviour::operations())
  {
    for (const std::string& call : misbehaviour::callsOf(operation))
      ++made[operation.name + "_" + call];
  }
  made.erase("end_CriticalSection"); // A destructor must not throw, and nor need a lock.
  EXPECT_EQ(made, expected);
}

} // namespace
