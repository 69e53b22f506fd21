// Finding the platform's services by name.
#include <DataAccessServiceIfc.h>
#include <LocalMgmtIfc.h>
#include <PhysicalInterfaceServiceIfc.h>
#include <SecurityLogServiceIfc.h>
#include <SvcRTEContext.h>

#include "PlatformFixture.h"

namespace
{
class RuntimeContextContract : public contract::PlatformTest
{
};
} // namespace

TEST_F(RuntimeContextContract, FindsEveryServiceUnderTheNameOfItsInterface)
{
  EXPECT_NE(found<DataAccessServiceIfc>("DataAccessServiceIfc"), nullptr);
  EXPECT_NE(found<LocalMgmtIfc>("LocalMgmtIfc"), nullptr);
  EXPECT_NE(found<SecurityLogServiceIfc>("SecurityLogServiceIfc"), nullptr);
  EXPECT_NE(found<PhysicalInterfaceServiceIfc>("PhysicalInterfaceServiceIfc"), nullptr);
}

TEST_F(RuntimeContextContract, NamesAreComparedExactly)
{
  for (const char* name : {"", "dataaccessserviceifc", "DataAccessServiceIfc ", "ValidatorIfc"})
    EXPECT_EQ(platform->context().findService(name), nullptr) << name;
}
