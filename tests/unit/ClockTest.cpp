// What the security log is told of the time, up to the end of 32 bits and behind it.
#include <ctime>
#include <limits>
#include <optional>

#include "ManagerTest.h"

namespace
{

using unit::ItemLine;
using unit::ManagerTest;

/// What the clock shows while a test says so.
std::optional<std::time_t> shownTime;

class ClockTest : public ManagerTest
{
protected:
  ~ClockTest() override
  {
    shownTime.reset();
  }

  std::time_t recordedAt(std::time_t now)
  {
    shownTime = now;
    std::map<std::string, std::string> requests = {{"S", "<S>"}};
    access.pendingRecords = {"record"};
    securityLog.lastTime = 1;
    access.sendDASRequests(requests, &das);
    return securityLog.lastTime;
  }
};

TEST_F(ClockTest, RecordsBearTheTimeOfTheClock)
{
  for (const std::time_t now :
       {std::time_t{0}, std::time_t{1700000000}, std::time_t{0x7FFFFFFF}, std::numeric_limits<std::time_t>::max()})
    EXPECT_EQ(recordedAt(now), now);
}

TEST_F(ClockTest, AClockThatCannotTellTheTimeLosesNoRecord)
{
  // The C library's answer once the seconds need more than 32 bits and a time has no more.
  EXPECT_EQ(recordedAt(-1), -1);
  EXPECT_EQ(recording::traceOf("logSecurityEvent").size(), 1U);
}

} // namespace

// Stands in for the C library's function in the whole test program.
extern "C" __attribute__((visibility("default"))) std::time_t time(std::time_t* copy) noexcept
{
  std::timespec now = {};
  std::timespec_get(&now, TIME_UTC);
  const std::time_t seconds = shownTime.value_or(now.tv_sec);
  if (copy != nullptr)
    *copy = seconds;
  return seconds;
}
