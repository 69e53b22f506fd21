// What somebody else does to a device's folder: files that go away, or that are none.
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "HostTesting.h"
#include "host/Device.h"
#include "host/LocalMgmtStore.h"

namespace
{
using hosttest::errorOf;
using hosttest::holds;

class HeldFolder : public testing::Test
{
protected:
  host::DeviceSettings settings() const
  {
    return {path, 1, 0, 0};
  }
  std::string bringUpError() const
  {
    return errorOf([this] { host::Device device(settings()); });
  }
  std::string notices() const
  {
    host::Device device(settings());
    std::string all;
    for (const std::string& notice : device.notices())
      all += notice + "\n";
    return all;
  }
  /// A device that changes something and is ended without being taken down.
  void runAndKill() const
  {
    const pid_t other = ::fork();
    if (other == 0)
    {
      host::Device device(settings());
      device.store().change("item", "value");
      ::_exit(0);
    }
    ::waitpid(other, nullptr, 0);
  }

  hosttest::TemporaryFolder folder;
  const std::filesystem::path path = folder / "device";
};

class PipeInPlaceOf : public HeldFolder, public testing::WithParamInterface<const char*>
{
};

class UnwritableDatabase : public HeldFolder, public testing::WithParamInterface<const char*>
{
};

constexpr uid_t nobody = 65534;
} // namespace

TEST_P(PipeInPlaceOf, AFileIsAnErrorThatNamesItAndHoldsNobodyUp)
{
  bringUpError();
  std::filesystem::remove(path / GetParam());
  ASSERT_EQ(::mkfifo((path / GetParam()).c_str(), 0600), 0);
  ::alarm(20);
  EXPECT_EQ(bringUpError(), (path / GetParam()).string() + ": is no regular file; move it away");
  ::alarm(0);
}

INSTANTIATE_TEST_SUITE_P(Each, PipeInPlaceOf,
                         testing::Values("das.key", "security.log", "lock", "das.db", "das.db-wal", "das.db-shm",
                                         "das.db-journal", "ocms.db"));

TEST_F(HeldFolder, IsHeldWhenItsLockFileIsRemoved)
{
  const host::Device device(settings());
  std::filesystem::remove(path / "lock");
  const pid_t other = ::fork();
  if (other == 0)
    ::_exit(holds(bringUpError(), "the device folder is in use already") ? 0 : 1);
  int status = -1;
  ::waitpid(other, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST_F(HeldFolder, TellsThatChangesBesideADatabaseAreGone)
{
  for (const char* name : {"das.db-wal", "ocms.db-wal"})
  {
    runAndKill();
    ASSERT_TRUE(std::filesystem::remove(path / name));
    const std::string told = notices();
    EXPECT_TRUE(holds(told, (path / name).string() + ": is gone, and was there when the device ended")) << told;
    EXPECT_EQ(notices(), "") << "told once";
  }
}

TEST_F(HeldFolder, HasNothingToTellWhenNothingIsGone)
{
  runAndKill();
  EXPECT_EQ(notices(), "") << "changes beside a database that was killed";
  EXPECT_EQ(notices(), "") << "and none beside one that was taken down";
  hosttest::writeFile(path / "lock", "das.key\nnonsense\n../x-wal\n");
  EXPECT_EQ(notices(), "");
}

TEST_P(UnwritableDatabase, IsToldAtTheStart)
{
  if (::geteuid() != 0)
    GTEST_SKIP() << "only the superuser can give files away";
  bringUpError();
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
  ASSERT_EQ(::chown(path.c_str(), nobody, nobody), 0);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(path))
    ASSERT_EQ(::chown(entry.path().c_str(), nobody, nobody), 0);
  const std::filesystem::path database = path / GetParam();
  ASSERT_EQ(::chown(database.c_str(), 0, 0), 0);
  std::filesystem::permissions(database, std::filesystem::perms(0644));
  const pid_t other = ::fork();
  if (other == 0)
    ::_exit(::setuid(nobody) == 0 &&
                    holds(notices(), database.string() + ": attempt to write a readonly database; make "
                                                         "it and its folder writable")
                ? 0
                : 1);
  int status = -1;
  ::waitpid(other, &status, 0);
  EXPECT_EQ(status, 0);
}

INSTANTIATE_TEST_SUITE_P(OfEitherKind, UnwritableDatabase, testing::Values("das.db", "ocms.db"));

TEST_F(HeldFolder, RefusesChangesOfACopyWithTheReasonForIt)
{
  std::filesystem::create_directories(path);
  host::DataAccessService das(path / "das.db", host::Storage::copy, "the disk is full; make room on its disk");
  das.provision({{"Plain", "", {"A"}, {}}});
  EXPECT_EQ(hosttest::send(das, hosttest::updateRequest("Plain", "<A>1</A>")),
            hosttest::errorReply("Plain", "the disk is full; make room on its disk"));
}
