// A device for each test, for the contracts that are tested on every platform.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "PlatformUnderTest.h"

namespace contract
{
class PlatformTest : public testing::Test
{
protected:
  void SetUp() override
  {
    if (platform == nullptr)
      GTEST_SKIP() << "SDM_CONTRACT_PLATFORM names no source that leads to the services of this platform";
  }

  /// The service of this name; a null pointer when it is absent or of another interface.
  template <typename Interface>
  Interface* found(const char* name)
  {
    return dynamic_cast<Interface*>(platform->context().findService(name));
  }

  const std::unique_ptr<Platform> platform = makePlatform();
};
} // namespace contract
