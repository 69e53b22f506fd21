// Every call of every operation calls back into every operation, at its first, a middle and its last position.
#include <map>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Rows.h"
#include "Stage.h"

namespace
{

using misbehaviour::Row;
using misbehaviour::Stage;
using ::testing::IsEmpty;

/// What an operation that runs inside another one does to it.
enum class Effect
{
  none,      ///< the outer one does, sends, logs and answers what it does undisturbed
  inTheTable ///< items or flags that the outer one works on change; it ends, and the manager is as good as new
};

const std::map<std::string, Effect>& inner()
{
  static const std::map<std::string, Effect> all = {{"start", Effect::inTheTable},
                                                    {"startFromDictionary", Effect::inTheTable},
                                                    {"laterStart", Effect::inTheTable},
                                                    {"ready", Effect::none},
                                                    {"setData", Effect::none},
                                                    {"getData", Effect::none},
                                                    {"manageableDataChanged", Effect::none},
                                                    {"addGetter", Effect::none},
                                                    {"addSetter", Effect::none},
                                                    {"getItem", Effect::none},
                                                    {"getPublishedItem", Effect::none},
                                                    {"setStartup", Effect::inTheTable},
                                                    {"setup", Effect::none},
                                                    {"clearAllManagedData", Effect::inTheTable},
                                                    {"setDefaultUserData", Effect::none},
                                                    {"importItemFromDAS", Effect::none},
                                                    {"deleteGetters", Effect::inTheTable},
                                                    {"deleteSetters", Effect::inTheTable},
                                                    {"reloadUserData", Effect::none}};
  return all;
}

/// Runs an operation out of sight: what it notes is not part of the outer one's trace.
void runUnseen(Stage& stage, const misbehaviour::Operation& operation)
{
  const recording::UntracedRecords untraced;
  std::vector<std::string> before;
  before.swap(recording::trace());
  operation.run(stage);
  before.swap(recording::trace());
}

const std::vector<std::string>& undisturbed(const misbehaviour::Operation& operation)
{
  static std::map<std::string, std::vector<std::string>> known;
  std::vector<std::string>& lines = known[operation.name];
  if (lines.empty())
    lines = Stage(operation.loaded).traceOf(operation);
  return lines;
}

/// Before an operation has the lock it is not running yet: what is deleted then is deleted at once, and the items
/// of a loaded map must not be used afterwards, as the interface says.
bool isForbidden(const Row& row, std::size_t position, const std::string& called)
{
  return called.rfind("delete", 0) == 0 && row.call == std::string("CriticalSection") && position == 1 &&
         misbehaviour::operation(row.operation).loaded;
}

class CallingBackFrom : public ::testing::TestWithParam<Row>
{
protected:
  void callBackAt(std::size_t position, const misbehaviour::Operation& called, Effect effect)
  {
    const Row& row = GetParam();
    const misbehaviour::Operation& operation = misbehaviour::operation(row.operation);
    Stage stage(operation.loaded);
    bool calledBack = false;
    misbehaviour::inCall(row.call, position,
                         [&]
                         {
                           calledBack = true;
                           runUnseen(stage, called);
                         });
    const auto lines = stage.traceOf(operation);
    recording::behaviour().everyCall = nullptr;
    EXPECT_TRUE(calledBack);
    if (effect == Effect::none)
    {
      EXPECT_EQ(lines, undisturbed(operation));
    }
    ASSERT_EQ(recording::behaviour().lockDepth, 0) << "the lock is given back";
    if (stage.manager == nullptr)
      return;
    EXPECT_EQ(stage.access.runningOperations, 0);
    EXPECT_EQ(stage.access.reply.parser, nullptr);
    EXPECT_THAT(stage.access.groups, IsEmpty());
    EXPECT_EQ(stage.afterwards(true), misbehaviour::undisturbed(true));
  }
};

TEST_P(CallingBackFrom, RunsBothOperationsToTheirEnds)
{
  const std::size_t times = GetParam().times;
  for (const std::size_t position : std::set<std::size_t>{1, (times + 1) / 2, times})
  {
    for (const auto& [name, effect] : inner())
    {
      SCOPED_TRACE(name + " at position " + std::to_string(position));
      if (!isForbidden(GetParam(), position, name))
        callBackAt(position, misbehaviour::operation(name), effect);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, CallingBackFrom, ::testing::ValuesIn(misbehaviour::rows()),
                         [](const auto& tested) { return tested.param.name(); });

TEST(CallingBackTest, EveryOperationButTheEndIsCalledBack)
{
  std::set<std::string> missing{"end"};
  for (const misbehaviour::Operation& operation : misbehaviour::operations())
  {
    if (inner().count(operation.name) == 0)
      missing.insert(operation.name);
  }
  EXPECT_THAT(missing, ::testing::ElementsAre("end"));
}

} // namespace
