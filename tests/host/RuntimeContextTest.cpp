// Offering and withdrawing services.
#include <gtest/gtest.h>

#include "host/PhysicalInterfaceService.h"
#include "host/RuntimeContext.h"

TEST(RuntimeContext, FindsWhatIsOfferedUntilItIsWithdrawn)
{
  host::RuntimeContext context;
  host::PhysicalInterfaceService service(3);
  EXPECT_EQ(context.findService("Name"), nullptr);
  context.offer("Name", &service);
  EXPECT_EQ(context.findService("Name"), &service);
  context.withdraw("Name");
  context.withdraw("Name");
  EXPECT_EQ(context.findService("Name"), nullptr);
}

TEST(RuntimeContext, LaterOfferTakesThePlace)
{
  host::RuntimeContext context;
  host::PhysicalInterfaceService first(1);
  host::PhysicalInterfaceService second(2);
  context.offer("Name", &first);
  context.offer("Name", &second);
  EXPECT_EQ(context.findService("Name"), &second);
  context.offer("Name", nullptr);
  EXPECT_EQ(context.findService("Name"), nullptr);
}
