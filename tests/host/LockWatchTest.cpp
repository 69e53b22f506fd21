// Who holds the lock and who waits for it, and what the log says when that takes long.
#include <CriticalSection.h>
#include <Semaphore.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <regex>
#include <thread>

#include "HostTesting.h"
#include "host/DeviceLog.h"
#include "host/LockWatch.h"
#include "host/Marks.h"

namespace
{
using host::Mark;
using host::MarkKind;
using std::chrono::milliseconds;

/// A log of the test's own, a short limit, and a lock.
class LockWatch : public testing::Test
{
protected:
  LockWatch()
  {
    host::openLog({folder / "device.log", 0, 6});
    host::setSlowWait(milliseconds(60));
  }
  ~LockWatch() override
  {
    host::setSlowWait(milliseconds(1000));
    host::closeLog();
  }

  host::LockReport report() const
  {
    const auto reports = host::lockReports();
    EXPECT_EQ(reports.size(), 1U);
    return reports.empty() ? host::LockReport() : reports.front();
  }
  std::vector<std::string> logged() const
  {
    return hosttest::linesOf(folder / "device.log");
  }
  void waitForWaiters(std::size_t count) const
  {
    while (report().waiters.size() != count)
      std::this_thread::sleep_for(milliseconds(1));
  }
  /// Another thread asks for the lock by an operation while this one holds it for so long, in a setter of a set.
  void holdAgainstAnother(milliseconds duration)
  {
    const Mark operation(MarkKind::operation, "setData");
    auto hold = std::make_unique<CriticalSection>(semaphore);
    const Mark callback(MarkKind::callback, "setIpAddress");
    std::thread other(
        [this]
        {
          const Mark reading(MarkKind::operation, "getData");
          const CriticalSection taken(semaphore);
        });
    waitForWaiters(1);
    std::this_thread::sleep_for(duration);
    hold.reset();
    other.join();
  }

  hosttest::TemporaryFolder folder;
  Semaphore semaphore{1, 1, true};
};
} // namespace

TEST_F(LockWatch, LineNamesWhoWaitsAndWhoHoldsTheLockInWhichCallback)
{
  holdAgainstAnother(milliseconds(100));
  ASSERT_FALSE(logged().empty());
  EXPECT_TRUE(std::regex_search(
      logged().front(),
      std::regex(R"( 2 LockWatch host/src/Semaphore\.cpp:\d+ getData \(thread \d+\) has waited \d\d+ ms for the lock, )"
                 R"(held by setData in callback setIpAddress \(thread \d+\) for \d\d+ ms$)")))
      << logged().front();
}

TEST_F(LockWatch, NothingIsLoggedBelowTheLimit)
{
  host::setSlowWait(milliseconds(20000));
  holdAgainstAnother(milliseconds(100));
  EXPECT_TRUE(logged().empty());
  EXPECT_EQ(report().slowWaits, 0U);
  EXPECT_GE(report().longestWait.count(), 90);
}

TEST_F(LockWatch, LimitOfZeroLogsNothing)
{
  host::setSlowWait(milliseconds(0));
  holdAgainstAnother(milliseconds(100));
  EXPECT_TRUE(logged().empty());
}

TEST_F(LockWatch, LongWaitIsLoggedAgainEachTimeItTookTwiceAsLong)
{
  holdAgainstAnother(milliseconds(300));
  // At 60, 120 and 240 ms; a busy machine may get to the next one.
  EXPECT_GE(logged().size(), 3U);
  EXPECT_LE(logged().size(), 6U);
  EXPECT_EQ(report().slowWaits, 1U);
}

TEST_F(LockWatch, HolderThatTakesItAgainDoesNotWait)
{
  const CriticalSection outer(semaphore);
  std::this_thread::sleep_for(milliseconds(100));
  const CriticalSection inner(semaphore);
  EXPECT_TRUE(logged().empty());
  EXPECT_EQ(report().holders.size(), 1U);
  EXPECT_TRUE(report().waiters.empty());
  EXPECT_EQ(report().longestWait.count(), 0);
}

TEST_F(LockWatch, HoldersAndWaitersCanBeAskedFor)
{
  const Mark operation(MarkKind::operation, "initialise");
  auto hold = std::make_unique<CriticalSection>(semaphore);
  std::thread other([this] { const CriticalSection taken(semaphore); });
  waitForWaiters(1);
  std::this_thread::sleep_for(milliseconds(20));
  const host::LockReport now = report();
  hold.reset();
  other.join();
  ASSERT_EQ(now.holders.size(), 1U);
  EXPECT_EQ(now.holders.front().operation, "initialise");
  EXPECT_EQ(now.holders.front().callback, "");
  EXPECT_GE(now.holders.front().duration.count(), 20);
  EXPECT_GE(now.waiters.front().duration.count(), 19);
  EXPECT_NE(now.waiters.front().thread, now.holders.front().thread);
  EXPECT_TRUE(report().holders.empty());
  EXPECT_TRUE(report().waiters.empty());
}

TEST_F(LockWatch, OutermostOperationAndInnermostCallbackAreTold)
{
  const Mark outer(MarkKind::operation, "setData");
  const Mark setter(MarkKind::callback, "setBanner");
  const Mark inner(MarkKind::operation, "getData");
  const CriticalSection hold(semaphore);
  EXPECT_EQ(report().holders.front().operation, "setData");
  EXPECT_EQ(report().holders.front().callback, "setBanner");
  const Mark getter(MarkKind::callback, "getBanner");
  EXPECT_EQ(report().holders.front().callback, "getBanner");
}

TEST_F(LockWatch, LongestWaitIsRememberedWithWhoHeldTheLock)
{
  holdAgainstAnother(milliseconds(100));
  EXPECT_GE(report().longestWait.count(), 90);
  EXPECT_EQ(report().slowWaits, 1U);
  EXPECT_TRUE(hosttest::holds(report().longestWaitBehind, "setData in callback setIpAddress (thread "));
}

TEST_F(LockWatch, SemaphoreThatIsGoneIsToldNoMore)
{
  {
    const Semaphore another(1, 1, true);
    EXPECT_EQ(host::lockReports().size(), 2U);
  }
  EXPECT_EQ(host::lockReports().size(), 1U);
}
