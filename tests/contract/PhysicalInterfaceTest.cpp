// What the device tells of its hardware.
#include <PhysicalInterfaceServiceIfc.h>

#include "PlatformFixture.h"

namespace
{
class PhysicalInterfaceContract : public contract::PlatformTest
{
};
} // namespace

TEST_F(PhysicalInterfaceContract, TellsTheUnitsNumberHoweverOftenItIsAsked)
{
  auto* hardware = found<PhysicalInterfaceServiceIfc>("PhysicalInterfaceServiceIfc");
  ASSERT_NE(hardware, nullptr);
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(hardware->getInterfaceCount(), platform->interfaceCount());
}
