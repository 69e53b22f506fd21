// Item map files of more than 2 GiB, which is more than a signed word of 32 bits counts.
#include <filesystem>
#include <fstream>

#include "ManagerTest.h"

namespace
{

using unit::ItemLine;
using unit::ManagerTest;

class LargeFilesTest : public ManagerTest
{
protected:
  LargeFilesTest()
  {
    // Takes no room on the disk: nothing but NUL bytes stands between the two lines, on a line of their own.
    writeItemMap(ItemLine("first").text() + "\n");
    std::filesystem::resize_file("CommsSettings.csv", holeEnd);
    std::ofstream("CommsSettings.csv", std::ios::binary | std::ios::app) << "\n" + ItemLine("last").text() + "\n";
  }

  static constexpr std::uintmax_t holeEnd = 0x80000010;
};

TEST_F(LargeFilesTest, AnItemMapFileOfMoreThan2GiBIsReadToItsEnd)
{
  ASSERT_GT(std::filesystem::file_size("CommsSettings.csv"), holeEnd);
  access.setAllManagedData("CommsItemMap");
  ASSERT_EQ(access.items.size(), 2U);
  EXPECT_EQ(access.items.front()->rootId, "first");
  EXPECT_EQ(access.items.back()->rootId, "last");
}

} // namespace
