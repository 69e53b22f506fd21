// Semaphores that cannot be.
#include <Semaphore.h>

#include <gtest/gtest.h>

#include <stdexcept>

TEST(HostSemaphore, RefusesCountsThatCannotBe)
{
  EXPECT_THROW(Semaphore(-1, 1, true), std::invalid_argument);
  EXPECT_THROW(Semaphore(2, 1, true), std::invalid_argument);
  EXPECT_THROW(Semaphore(0, 0, true), std::invalid_argument);
  EXPECT_NO_THROW(Semaphore(0, 1, false));
}
