// Finding the platform's services by name.
#include <PhysicalInterfaceServiceIfc.h>

#include <gtest/gtest.h>

#include "ServicesUnderTest.h"

namespace
{
template <typename Interface>
bool finds(SvcRTEContext& context, const char* name)
{
  return dynamic_cast<Interface*>(context.findService(name)) != nullptr;
}
} // namespace

TEST(RuntimeContextContract, FindsEveryServiceUnderTheNameOfItsInterface)
{
  const auto services = contract::makeServices();
  SvcRTEContext& context = services->context();
  EXPECT_TRUE(finds<DataAccessServiceIfc>(context, "DataAccessServiceIfc"));
  EXPECT_TRUE(finds<LocalMgmtIfc>(context, "LocalMgmtIfc"));
  EXPECT_TRUE(finds<SecurityLogServiceIfc>(context, "SecurityLogServiceIfc"));
  EXPECT_TRUE(finds<PhysicalInterfaceServiceIfc>(context, "PhysicalInterfaceServiceIfc"));
}

TEST(RuntimeContextContract, NamesAreComparedExactly)
{
  const auto services = contract::makeServices();
  for (const char* name : {"", "dataaccessserviceifc", "DataAccessServiceIfc ", "ValidatorIfc"})
    EXPECT_EQ(services->context().findService(name), nullptr) << name;
}
