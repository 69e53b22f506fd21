// What the host reads out of a record.
#include <gtest/gtest.h>

#include "host/RejectReasons.h"

TEST(RejectReasons, AreToldInTheOrderTheyCameIn)
{
  ManageableData data;
  EXPECT_TRUE(host::rejectReasons(data).empty());
  data.addRejectReason("item", "item", "out of range");
  data.addRejectReason("", "/", "group failed");
  const std::vector<host::RejectReason> reasons = host::rejectReasons(data);
  ASSERT_EQ(reasons.size(), 2U);
  EXPECT_EQ(reasons[0].rootId, "item");
  EXPECT_EQ(reasons[0].name, "item");
  EXPECT_EQ(reasons[0].reason, "out of range");
  EXPECT_EQ(reasons[1].rootId, "");
  EXPECT_EQ(reasons[1].name, "/");
  EXPECT_EQ(reasons[1].reason, "group failed");
}
