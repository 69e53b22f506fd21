// How long callbacks took, by name.
#include <gtest/gtest.h>

#include <map>
#include <numeric>
#include <stdexcept>
#include <thread>

#include "host/CallTimes.h"
#include "host/Marks.h"

namespace
{
using host::Mark;
using host::MarkKind;

void call(const std::string& name, std::chrono::milliseconds duration)
{
  const Mark mark(MarkKind::callback, name);
  std::this_thread::sleep_for(duration);
}

class CallTimes : public testing::Test
{
protected:
  CallTimes()
  {
    host::forgetCallTimes();
  }
  ~CallTimes() override
  {
    host::forgetCallTimes();
  }
};
} // namespace

TEST_F(CallTimes, CallIsCountedUnderItsNameAndItsDuration)
{
  call("slow", std::chrono::milliseconds(12));
  const auto times = host::callTimes();
  ASSERT_EQ(times.size(), 1U);
  EXPECT_EQ(times.front().name, "slow");
  EXPECT_EQ(times.front().calls, 1U);
  EXPECT_GE(times.front().longest.count(), 12000);
  EXPECT_EQ(times.front().total, times.front().longest);
  // Below 10 ms stands nothing; what the machine makes of 12 is another matter.
  EXPECT_EQ(times.front().histogram[0] + times.front().histogram[1] + times.front().histogram[2], 0U);
}

TEST_F(CallTimes, WhatTookLongestInAllComesFirst)
{
  call("short", std::chrono::milliseconds(0));
  call("long", std::chrono::milliseconds(30));
  call("short", std::chrono::milliseconds(0));
  const auto times = host::callTimes();
  ASSERT_EQ(times.size(), 2U);
  EXPECT_EQ(times.front().name, "long");
  EXPECT_EQ(times.back().calls, 2U);
}

TEST_F(CallTimes, EveryCallStandsInOnePlaceOfTheHistogram)
{
  for (int i = 0; i < 5; ++i)
    call("often", std::chrono::milliseconds(i));
  const auto time = host::callTimes().front();
  EXPECT_EQ(std::accumulate(time.histogram.begin(), time.histogram.end(), std::uint64_t{0}), 5U);
  EXPECT_GE(time.total, time.longest);
}

TEST_F(CallTimes, CallThatThrowsIsCountedAsWell)
{
  EXPECT_THROW(
      {
        const Mark mark(MarkKind::callback, "thrower");
        throw std::runtime_error("no");
      },
      std::runtime_error);
  EXPECT_EQ(host::callTimes().front().calls, 1U);
}

TEST_F(CallTimes, OfVeryManyNamesAreCountedTogether)
{
  call("known", std::chrono::milliseconds(0));
  for (int i = 0; i < 10050; ++i)
    call(std::to_string(i), std::chrono::milliseconds(0));
  call("known", std::chrono::milliseconds(0));
  std::map<std::string, std::uint64_t> calls;
  for (const host::CallTime& time : host::callTimes())
    calls[time.name] = time.calls;
  EXPECT_EQ(calls.size(), 10001U);
  EXPECT_EQ(calls["known"], 2U);
  EXPECT_EQ(calls["(others)"], 51U);
}

TEST_F(CallTimes, OperationsAreNoCallbacks)
{
  {
    const Mark mark(MarkKind::operation, "setData");
  }
  EXPECT_TRUE(host::callTimes().empty());
}
