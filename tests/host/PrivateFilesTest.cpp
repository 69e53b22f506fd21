// What a device keeps is its owner's alone, whatever the umask says and whatever was there before.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <map>
#include <memory>

#include "HostTesting.h"
#include "host/Device.h"
#include "host/DeviceLog.h"
#include "host/PrivateFiles.h"
#include "host/keepAside.h"

namespace
{
using hosttest::holds;
using Modes = std::map<std::string, mode_t>;
using Texts = std::vector<std::string>;

mode_t modeOf(const std::filesystem::path& file)
{
  struct stat status = {};
  return ::stat(file.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

/// Files that are not 0600 and folders that are not 0700, below the folder and itself.
Modes openIn(const std::filesystem::path& folder)
{
  Modes found;
  const auto look = [&](const std::filesystem::path& path)
  {
    if (modeOf(path) != (std::filesystem::is_directory(path) ? 0700U : 0600U))
      found[path.string()] = modeOf(path);
  };
  look(folder);
  for (const auto& each : std::filesystem::recursive_directory_iterator(folder))
    look(each.path());
  return found;
}

class PrivateFiles : public testing::Test
{
protected:
  void TearDown() override
  {
    ::umask(before);
  }
  void makeFile(const std::string& name, mode_t mode) const
  {
    hosttest::writeFile(folder / name, "text");
    ::chmod((folder / name).c_str(), mode);
  }
  /// Values in both databases and a record, so that what belongs to them is there as well.
  static void use(host::Device& device)
  {
    device.das().provision({{"Plain", "", {"A"}, {}}});
    hosttest::send(device.traffic(), hosttest::updateRequest("Plain", "<A>1</A>"));
    device.store().change("item", "value");
    device.securityLog().logSecurityEvent(0, 4, 1, 5, 3, false, "record", "", "");
  }

  const mode_t before = ::umask(022);
  hosttest::TemporaryFolder folder;
};
} // namespace

TEST_F(PrivateFiles, OfADeviceAreItsOwnersAloneWithEveryUmask)
{
  for (const mode_t mask : {0U, 0022U, 0077U, 0277U, 0777U})
  {
    const auto path = folder / std::to_string(mask) / "parent" / "device";
    ::umask(mask);
    host::Device device({path, 1, 2, 0});
    use(device);
    ::umask(022);
    EXPECT_EQ(openIn(folder / std::to_string(mask)), Modes()) << mask;
    EXPECT_TRUE(std::filesystem::exists(path / "das.db-wal") && std::filesystem::exists(path / "ocms.db-shm"));
    EXPECT_EQ(device.notices(), Texts()) << mask;
  }
}

TEST_F(PrivateFiles, FoundOpenAreClosedAndTold)
{
  const auto path = folder / "device";
  {
    host::Device device({path, 1, 2, 0});
    use(device);
  }
  for (const char* name : {"das.db", "ocms.db", "das.key", "security.log", "lock", "log/device.log"})
    ::chmod((path / name).c_str(), 0664);
  host::Device device({path, 1, 2, 0});
  use(device);
  EXPECT_EQ(openIn(path), Modes());
  const std::string rest = "; if others could reach the folder, change the passwords that it holds";
  EXPECT_EQ(device.notices(),
            (Texts{path.string() +
                       ": open to others until now, closed to them: das.db, das.key, ocms.db, "
                       "security.log" +
                       rest,
                   (path / "log").string() + ": open to others until now, closed to them: device.log" + rest}));
  EXPECT_TRUE(holds(hosttest::contentOf(path / "log" / "device.log"), "closed to them: das.db, das.key"));
}

TEST_F(PrivateFiles, InAFolderThatIsOpenAreToldEachTime)
{
  const std::map<mode_t, std::string> table = {{0755, ", so they see what files it has; give it the mode 0700"},
                                               {0710, ", so they see what files it has; give it the mode 0700"},
                                               {0770, ", so they can put files of theirs in the place of its files; "
                                                      "give it the mode 0700"},
                                               {0701, ", so they see what files it has; give it the mode 0700"}};
  const auto path = folder / "device";
  std::filesystem::create_directory(path);
  for (const auto& [mode, end] : table)
  {
    ::chmod(path.c_str(), mode);
    host::Device device({path, 1, 2, 0});
    ASSERT_EQ(device.notices().size(), 1U) << mode;
    EXPECT_TRUE(holds(device.notices().front(), path.string() + ": the folder is open to others, its mode is 0"));
    EXPECT_TRUE(holds(device.notices().front(), end)) << device.notices().front();
    EXPECT_EQ(modeOf(path), mode) << "left as the operator set it";
  }
}

TEST_F(PrivateFiles, AreClosedByTheirNames)
{
  const Texts closed = {"das.db", "das.db-wal", "das.db.damaged-1", "das.db.damaged-1-wal"};
  for (const std::string& name : closed)
    makeFile(name, 0604);
  for (const char* name : {"das.dbx", "xdas.db", "other"})
    makeFile(name, 0644);
  EXPECT_EQ(host::closeToOthers(folder.path(), {"das.db"}).size(), 1U);
  for (const std::string& name : closed)
    EXPECT_EQ(modeOf(folder / name), 0600U) << name;
  for (const char* name : {"das.dbx", "xdas.db", "other"})
    EXPECT_EQ(modeOf(folder / name), 0644U) << name;
  EXPECT_EQ(host::closeToOthers(folder.path(), {"das.db"}), Texts());
}

TEST_F(PrivateFiles, ThatAreLinksOrNoFilesAreLeftAlone)
{
  makeFile("target", 0644);
  std::filesystem::create_symlink(folder / "target", folder / "das.db");
  std::filesystem::create_directory(folder / "das.db.d");
  ::chmod((folder / "das.db.d").c_str(), 0755);
  ASSERT_EQ(::mkfifo((folder / "das.db.fifo").c_str(), 0644), 0);
  EXPECT_EQ(host::closeToOthers(folder.path(), {"das.db"}), Texts());
  EXPECT_EQ(modeOf(folder / "target"), 0644U);
  EXPECT_EQ(modeOf(folder / "das.db.d"), 0755U);
  EXPECT_EQ(host::closeToOthers(folder / "missing", {"das.db"}), Texts());
}

TEST_F(PrivateFiles, ThatAreManyAreToldInOneSentence)
{
  for (int i = 0; i < 11; ++i)
    makeFile("a." + std::to_string(10 + i), 0644);
  const Texts told = host::closeToOthers(folder.path(), {"a"});
  ASSERT_EQ(told.size(), 1U);
  EXPECT_TRUE(holds(told.front(), "a.10, a.11, a.12, a.13, a.14, a.15, a.16, a.17 and 3 more;")) << told.front();
}

TEST_F(PrivateFiles, AreOpenedAndClosedToOthers)
{
  ::umask(0777);
  const std::map<std::string, mode_t> table = {{"new", 0}, {"open", 0666}, {"closed", 0400}};
  for (const auto& [name, mode] : table)
  {
    if (mode != 0)
      makeFile(name, mode);
    const int opened = host::openPrivate(folder / name, ::geteuid() == 0 ? O_WRONLY : O_RDONLY);
    ASSERT_GE(opened, 0) << name;
    EXPECT_NE(::fcntl(opened, F_GETFD) & FD_CLOEXEC, 0);
    ::close(opened);
    EXPECT_EQ(modeOf(folder / name), mode == 0400 ? 0400U : 0600U) << name;
  }
  EXPECT_EQ(::umask(0), 0777U) << "the umask is the process's";
}

TEST_F(PrivateFiles, ThatAreDevicesKeepTheirMode)
{
  const mode_t mode = modeOf("/dev/null");
  ::close(host::openPrivate("/dev/null", O_WRONLY));
  EXPECT_EQ(modeOf("/dev/null"), mode);
  EXPECT_LT(host::openPrivate(folder / "missing" / "file", O_WRONLY), 0);
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(PrivateFiles, AreNotMadeForADatabaseInMemory)
{
  const host::LocalMgmtStore store(":memory:");
  EXPECT_FALSE(std::filesystem::exists(":memory:"));
}

TEST_F(PrivateFiles, OfTheLogStayClosedWhenTheyRotate)
{
  ::umask(0);
  const auto file = folder / "made" / "device.log";
  host::openLog({file, 0, 6});
  const std::string text(1024 * 1024, 'x');
  for (int i = 0; i < 12; ++i)
    logAppUni("Module", "source", 2, 1, "%s", text.c_str());
  host::closeLog();
  EXPECT_TRUE(std::filesystem::exists(folder / "made" / "device.2.log"));
  EXPECT_EQ(openIn(folder / "made"), Modes());
}
