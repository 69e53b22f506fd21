// The lock, by its scoped holds.
#include <CriticalSection.h>
#include <Semaphore.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "Finishes.h"

namespace
{
using contract::finishes;

/// A second thread that wants the semaphore while the first one holds it. Says whether it got it too early.
class Rival
{
public:
  explicit Rival(Semaphore& semaphore)
      : thread(
            [this, &semaphore]
            {
              started = true;
              const CriticalSection hold(semaphore);
              gotItEarly = !allowed;
              gotIt = true;
            })
  {
    while (!started)
      std::this_thread::yield();
    // A broken semaphore lets it in within this time; an intact one cannot.
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }

  void allow()
  {
    allowed = true;
  }
  bool waitedUntilAllowed()
  {
    thread.join();
    return !gotItEarly;
  }
  bool hasIt() const
  {
    return gotIt;
  }

private:
  std::atomic<bool> started{false};
  std::atomic<bool> allowed{false};
  std::atomic<bool> gotItEarly{false};
  std::atomic<bool> gotIt{false};
  std::thread thread;
};
} // namespace

TEST(SemaphoreContract, OneThreadAtATimeIsInside)
{
  Semaphore semaphore(1, 1, true);
  int unguarded = 0;
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back(
        [&]
        {
          for (int i = 0; i < 5000; ++i)
          {
            const CriticalSection hold(semaphore);
            const int seen = unguarded;
            if (i % 100 == 0)
              std::this_thread::yield();
            unguarded = seen + 1;
          }
        });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(unguarded, 20000);
}

TEST(SemaphoreContract, HolderTakesItAgainWithoutWaiting)
{
  auto semaphore = std::make_shared<Semaphore>(1, 1, true);
  EXPECT_TRUE(finishes(
      [semaphore]
      {
        const CriticalSection first(*semaphore);
        const CriticalSection second(*semaphore);
        const CriticalSection third(*semaphore);
      }));
}

TEST(SemaphoreContract, OthersWaitForTheHolder)
{
  Semaphore semaphore(1, 1, true);
  auto hold = std::make_unique<CriticalSection>(semaphore);
  Rival rival(semaphore);
  EXPECT_FALSE(rival.hasIt());
  rival.allow();
  hold.reset();
  EXPECT_TRUE(rival.waitedUntilAllowed());
}

TEST(SemaphoreContract, InnerReleaseOfTheHolderFreesNothing)
{
  Semaphore semaphore(1, 1, true);
  auto outer = std::make_unique<CriticalSection>(semaphore);
  auto inner = std::make_unique<CriticalSection>(semaphore);
  inner.reset();
  Rival rival(semaphore);
  EXPECT_FALSE(rival.hasIt());
  rival.allow();
  outer.reset();
  EXPECT_TRUE(rival.waitedUntilAllowed());
}

TEST(SemaphoreContract, IsFreeAgainAfterNestedHolds)
{
  auto semaphore = std::make_shared<Semaphore>(1, 1, true);
  {
    const CriticalSection outer(*semaphore);
    const CriticalSection inner(*semaphore);
  }
  EXPECT_TRUE(finishes([semaphore] { const CriticalSection hold(*semaphore); }));
}

TEST(SemaphoreContract, ExceptionGivesItBack)
{
  auto semaphore = std::make_shared<Semaphore>(1, 1, true);
  EXPECT_THROW(
      {
        const CriticalSection hold(*semaphore);
        throw std::runtime_error("on the way out");
      },
      std::runtime_error);
  EXPECT_TRUE(finishes([semaphore] { const CriticalSection hold(*semaphore); }));
}

TEST(SemaphoreContract, TwoUnitsLetTwoThreadsIn)
{
  auto semaphore = std::make_shared<Semaphore>(2, 2, true);
  auto inside = std::make_shared<std::atomic<int>>(0);
  const auto meet = [semaphore, inside]
  {
    const CriticalSection hold(*semaphore);
    ++*inside;
    while (*inside < 2)
      std::this_thread::yield();
  };
  EXPECT_TRUE(finishes(
      [meet]
      {
        std::thread other(meet);
        meet();
        other.join();
      }));
}

TEST(SemaphoreContract, TwoUnitsKeepAThirdThreadOut)
{
  Semaphore semaphore(2, 2, true);
  std::atomic<int> inside{0};
  std::atomic<bool> tooMany{false};
  std::vector<std::thread> threads;
  for (int t = 0; t < 6; ++t)
    threads.emplace_back(
        [&]
        {
          for (int i = 0; i < 500; ++i)
          {
            const CriticalSection hold(semaphore);
            if (++inside > 2)
              tooMany = true;
            std::this_thread::yield();
            --inside;
          }
        });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_FALSE(tooMany);
}

TEST(SemaphoreContract, ReentrantHolderUsesOneUnitHoweverOften)
{
  auto semaphore = std::make_shared<Semaphore>(2, 2, true);
  const CriticalSection first(*semaphore);
  const CriticalSection second(*semaphore);
  EXPECT_TRUE(finishes([semaphore] { const CriticalSection hold(*semaphore); }));
}

TEST(SemaphoreContract, WithoutReentrancyEveryHoldTakesAUnit)
{
  Semaphore semaphore(2, 2, false);
  auto first = std::make_unique<CriticalSection>(semaphore);
  const CriticalSection second(semaphore);
  Rival rival(semaphore);
  EXPECT_FALSE(rival.hasIt());
  rival.allow();
  first.reset();
  EXPECT_TRUE(rival.waitedUntilAllowed());
}

TEST(SemaphoreContract, OnlyTheInitialUnitsAreFree)
{
  Semaphore semaphore(1, 2, false);
  auto hold = std::make_unique<CriticalSection>(semaphore);
  Rival rival(semaphore);
  EXPECT_FALSE(rival.hasIt());
  rival.allow();
  hold.reset();
  EXPECT_TRUE(rival.waitedUntilAllowed());
}
