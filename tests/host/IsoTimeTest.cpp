// Points in time as texts.
#include <gtest/gtest.h>

#include <ctime>

#include "host/IsoTime.h"

namespace
{
using std::chrono::milliseconds;
using Time = std::chrono::system_clock::time_point;
} // namespace

TEST(IsoTime, CountsMillisecondsUpwardsOnBothSidesOf1970)
{
  EXPECT_EQ(host::isoTime(Time(milliseconds(0))), "1970-01-01T00:00:00.000Z");
  EXPECT_EQ(host::isoTime(Time(milliseconds(1700000000007))), "2023-11-14T22:13:20.007Z");
  EXPECT_EQ(host::isoTime(Time(milliseconds(-434))), "1969-12-31T23:59:59.566Z");
  EXPECT_EQ(host::isoTime(Time(milliseconds(-1000))), "1969-12-31T23:59:59.000Z");
  EXPECT_EQ(host::isoTime(Time(milliseconds(-86400001))), "1969-12-30T23:59:59.999Z");
}

TEST(IsoTime, TellsTheLocalTimeWithoutTheZone)
{
  const std::time_t second = -1;
  std::tm parts = {};
  ::localtime_r(&second, &parts);
  char expected[64];
  std::strftime(expected, sizeof expected, "%Y-%m-%dT%H:%M:%S.566", &parts);
  EXPECT_EQ(host::localTime(Time(milliseconds(-434))), expected);
}
