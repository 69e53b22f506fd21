// The host's files when they are larger than 2 GiB, which is more than a signed word of 32 bits counts. They are
// sparse: what the tests do not write takes no room on the disk.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <array>

#include "DasFixture.h"
#include "host/KeyFile.h"
#include "host/LocalMgmtStore.h"
#include "host/SecurityLogService.h"

namespace
{
using hosttest::errorOf;
using hosttest::holds;
using hosttest::updateReply;

constexpr std::uintmax_t large = 0x90000000;

std::array<char, 4> bigEndian(std::uint32_t number)
{
  return {static_cast<char>(number >> 24), static_cast<char>(number >> 16), static_cast<char>(number >> 8),
          static_cast<char>(number)};
}

/// Makes the database believe that all its pages up to `large` are taken, so that what is written next goes behind.
void growDatabase(const std::filesystem::path& file)
{
  constexpr std::uint32_t pageSize = 4096;
  std::filesystem::resize_file(file, large);
  const int descriptor = ::open(file.c_str(), O_RDWR);
  const std::array<char, 4> pages = bigEndian(static_cast<std::uint32_t>(large / pageSize));
  EXPECT_EQ(::pwrite(descriptor, pages.data(), pages.size(), 28), 4);
  ::close(descriptor);
}

std::string longValue()
{
  return std::string(2 * 1024 * 1024, 'v') + "end";
}

TEST(LargeFiles, ADatabaseOfMoreThan2GiBIsReadAndWritten)
{
  const hosttest::TemporaryFolder folder;
  const std::filesystem::path file = folder / "das.db";
  {
    host::DataAccessService das(file);
    das.provision({{"Plain", "", {"A", "B"}, {}}});
    EXPECT_EQ(hosttest::send(das, hosttest::updateRequest("Plain", "<A>before</A>")), updateReply("Plain"));
  }
  growDatabase(file);
  {
    host::DataAccessService das(file);
    EXPECT_EQ(das.storedCell("Plain", "A", "", ""), "before");
    EXPECT_EQ(hosttest::send(das, hosttest::updateRequest("Plain", "<B>" + longValue() + "</B>")),
              updateReply("Plain"));
  }
  EXPECT_GT(std::filesystem::file_size(file), large) << "written into the hole";
  host::DataAccessService das(file);
  EXPECT_EQ(das.storedCell("Plain", "A", "", ""), "before");
  EXPECT_TRUE(das.storedCell("Plain", "B", "", "") == longValue());
}

TEST(LargeFiles, ALocalStoreOfMoreThan2GiBIsReadAndWritten)
{
  const hosttest::TemporaryFolder folder;
  const std::filesystem::path file = folder / "ocms.db";
  {
    host::LocalMgmtStore store(file);
    store.change("a", "before");
  }
  growDatabase(file);
  {
    host::LocalMgmtStore store(file);
    store.change("b", longValue());
  }
  EXPECT_GT(std::filesystem::file_size(file), large) << "written into the hole";
  host::LocalMgmtStore store(file);
  EXPECT_EQ(store.value("a"), "before");
  EXPECT_TRUE(store.value("b") == longValue());
}

TEST(LargeFiles, ASecurityLogOfMoreThan2GiBIsContinuedInANewFileAndRead)
{
  const hosttest::TemporaryFolder folder;
  const std::filesystem::path file = folder / "security.log";
  hosttest::writeFile(file, "old\n");
  std::filesystem::resize_file(file, large);
  host::SecurityLogService service(file);
  service.logSecurityEvent(0, 4, 1, 5, 3, false, "first", "", "");
  service.logSecurityEvent(1, 4, 1, 5, 3, false, "second", "", "");
  const std::vector<std::string> lines = service.lastLines(1);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines.front(), "1970-01-01T00:00:01Z\t4\t1\t5\t3\tok\tsecond\t-\t-");
  EXPECT_EQ(std::filesystem::file_size(file.string() + ".1"), large + 13) << "its last line was unfinished";
}

TEST(LargeFiles, AKeyOfMoreThan2GiBIsRefusedWithItsSize)
{
  const hosttest::TemporaryFolder folder;
  const std::filesystem::path file = folder / "das.key";
  hosttest::writeFile(file, "k");
  ::chmod(file.c_str(), S_IRUSR | S_IWUSR);
  std::filesystem::resize_file(file, 0x100000020);
  EXPECT_TRUE(holds(errorOf([&] { host::useKeyFile(file); }), "a key has 32 bytes, not 4294967328"));
}
} // namespace
