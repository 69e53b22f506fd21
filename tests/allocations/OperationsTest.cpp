// How often each operation asks for memory while all log gates are closed: exactly, so that one text that is copied,
// formatted or masked too many is noticed, and one saved as well. The record's and the replies' own requests are part
// of it.
#include <filesystem>
#include <ostream>

#include <gtest/gtest.h>

#include "CountingNew.h"
#include "Scenarios.h"
#include "memory/Log.h"

namespace
{

struct Expected
{
  const char* operation;
  std::size_t requests;
  /// Whether it has anything to tell when the gates are open.
  bool talks = true;
};

std::ostream& operator<<(std::ostream& out, const Expected& expected)
{
  return out << expected.operation;
}

const Expected table[] = {
    {"load/file", 6168},
    {"load/shuffled", 6168},
    {"load/dictionary", 10064},
    {"cache", 12, false},
    {"import", 86},
    {"import/wide", 5},
    {"import/rows", 5},
    {"start", 6777},
    {"set/all", 1046},
    {"get/getter", 901},
    {"get/getter/1", 2},
    {"get/database", 5761},
    {"get/database/1", 7},
    {"changed", 201},
    {"changed/1", 3},
    {"publish", 1001},
    {"user/defaults", 7325},
    {"user/reload", 4656},
    {"lookup", 0, false},
    {"lookup/shuffled", 0, false},
    {"set/1in1", 7},
    {"set/10in1", 17},
    {"set/10in10", 52},
    {"set/1000in1", 1014},
    {"set/1000in10", 1084},
    {"set/1in1/grouped", 17},
    {"set/10in1/grouped", 36},
    {"set/10in10/grouped", 137},
    {"set/1000in1/grouped", 2023},
    {"set/1000in10/grouped", 2159},
};

class OperationsTest : public ::testing::TestWithParam<Expected>
{
protected:
  OperationsTest() : previous(std::filesystem::current_path())
  {
    std::string pattern = (std::filesystem::temp_directory_path() / "sdm-cost-XXXXXX").string();
    folder = ::mkdtemp(pattern.data());
    std::filesystem::current_path(folder);
  }

  ~OperationsTest() override
  {
    bench::log = bench::Log();
    std::filesystem::current_path(previous);
    std::filesystem::remove_all(folder);
  }

  static bench::Run make()
  {
    for (const bench::Scenario& scenario : bench::operations())
    {
      if (scenario.name == GetParam().operation)
        return scenario.make(scenario.shape);
    }
    throw std::runtime_error("no such operation");
  }

private:
  std::filesystem::path previous;
  std::filesystem::path folder;
};

TEST_P(OperationsTest, AsksForMemoryExactlyAsOftenAndWritesAndMasksNothingForClosedGates)
{
  EXPECT_EQ(cost::requestsOf(make()), GetParam().requests);
  EXPECT_EQ(bench::log.lines, 0U);
  EXPECT_EQ(bench::log.masked, 0U);
}

TEST_P(OperationsTest, AsksMoreOftenOnlyWhenItTellsSomething)
{
  const bench::Run run = make();
  bench::log.open = true;
  const std::size_t open = cost::requestsOf(run);
  EXPECT_EQ(bench::log.lines > 0, GetParam().talks);
  EXPECT_EQ(open > GetParam().requests, GetParam().talks) << open;
}

INSTANTIATE_TEST_SUITE_P(Each, OperationsTest, ::testing::ValuesIn(table));

TEST(OperationsTableTest, HasEveryOperation)
{
  EXPECT_EQ(bench::operations().size(), std::size(table));
}

} // namespace
