// The records that carry an operation's work.
#include <type_traits>

#include "ManagerTest.h"

namespace
{

using SetDataBlob = ServiceDataManager::SetDataBlob;
using GroupDataBlob = ServiceDataManager::GroupDataBlob;

static_assert(std::has_virtual_destructor_v<SetDataBlob> && std::has_virtual_destructor_v<GroupDataBlob>);
static_assert(std::is_nothrow_move_constructible_v<SetDataBlob> && std::is_nothrow_move_constructible_v<GroupDataBlob>);

TEST(SetDataBlobTest, StartsUntried)
{
  const SetDataBlob blob("id", "value", nullptr);
  EXPECT_EQ(blob.rootId, "id");
  EXPECT_EQ(blob.value, "value");
  EXPECT_FALSE(blob.validated);
  EXPECT_EQ(blob.reason, "");
  EXPECT_EQ(blob.item, nullptr);
}

TEST(SetDataBlobTest, CopiesOwnTheirTexts)
{
  ManagedDataItem item;
  std::vector<SetDataBlob> blobs{SetDataBlob("id", "value", &item)};
  blobs.front().validated = true;
  std::vector<SetDataBlob> copy = blobs;
  blobs.front().reason = "changed";
  EXPECT_EQ(copy.front().reason, "");
  EXPECT_TRUE(copy.front().validated);
  EXPECT_EQ(copy.front().item, &item);
}

TEST(GroupDataBlobTest, MovesGroupOutcomeAndReasonTogether)
{
  GroupDataBlob blob("group", false, "why");
  const GroupDataBlob moved = std::move(blob);
  EXPECT_EQ(moved.groupName, "group");
  EXPECT_FALSE(moved.valid);
  EXPECT_EQ(moved.reason, "why");
}

} // namespace
