// A whole device in its folder.
#include <ClientUtils.h>
#include <CriticalSection.h>
#include <DasCrypt.h>
#include <PhysicalInterfaceServiceIfc.h>
#include <Semaphore.h>
#include <logAppUni.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "FileCalls.h"
#include "HostTesting.h"
#include "host/CallTimes.h"
#include "host/Device.h"
#include "host/DeviceLog.h"
#include "host/Faults.h"
#include "host/Marks.h"
#include "host/Secrets.h"

namespace
{
using hosttest::errorOf;
using hosttest::holds;

class DeviceFolder : public testing::Test
{
protected:
  void TearDown() override
  {
    host::setLogLevel(2);
  }
  host::DeviceSettings settings(std::uint32_t interfaces = 1) const
  {
    return {path, interfaces, 2, 0};
  }
  std::string bringUpError() const
  {
    return errorOf([this] { host::Device device(settings()); });
  }

  hosttest::TemporaryFolder folder;
  const std::filesystem::path path = folder / "new" / "device";
};
} // namespace

TEST_F(DeviceFolder, IsMadeWithAllItsFiles)
{
  const host::Device device(settings());
  for (const char* name : {"das.db", "ocms.db", "das.key", "security.log", "log/device.log"})
    EXPECT_TRUE(std::filesystem::is_regular_file(path / name)) << name;
}

TEST_F(DeviceFolder, IsForItsOwnerAloneWhenItIsNew)
{
  bringUpError();
  EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms::owner_all);
  std::filesystem::permissions(path, std::filesystem::perms::all);
  bringUpError();
  EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms::all) << "left as the operator set it";
}

TEST_F(DeviceFolder, LastsWithAllFoldersAboveThatWereMadeForIt)
{
  const hosttest::FileCalls calls;
  const host::Device device(settings());
  const std::vector<std::string> noted = calls.noted();
  for (const std::filesystem::path& above : {path.parent_path(), folder.path(), folder.path().parent_path()})
    EXPECT_NE(std::find(noted.begin(), noted.end(), "sync " + std::filesystem::canonical(above).string()), noted.end())
        << above;
}

TEST_F(DeviceFolder, OffersItsServicesWithTheTrafficInFront)
{
  host::Device device(settings(4));
  SvcRTEContext& context = device.context();
  EXPECT_EQ(context.findService("DataAccessServiceIfc"), &device.traffic());
  EXPECT_EQ(context.findService("LocalMgmtIfc"), &device.offeredStore());
  EXPECT_EQ(context.findService("SecurityLogServiceIfc"), &device.offeredSecurityLog());
  auto* interfaces = dynamic_cast<::PhysicalInterfaceServiceIfc*>(context.findService("PhysicalInterfaceServiceIfc"));
  ASSERT_NE(interfaces, nullptr);
  EXPECT_EQ(interfaces->getInterfaceCount(), 4U);
}

TEST_F(DeviceFolder, LastsBetweenDevices)
{
  std::string text;
  {
    host::Device device(settings());
    device.das().provision({{"Plain", "", {"A"}, {}}});
    hosttest::send(device.traffic(), hosttest::updateRequest("Plain", "<A>1</A>"));
    device.store().change("item", "value");
    ASSERT_TRUE(DasCrypt::toEncryptedText("secret", text));
  }
  host::Device device(settings());
  EXPECT_EQ(device.das().storedCell("Plain", "A", "", ""), "1");
  EXPECT_EQ(device.store().value("item"), "value");
  std::string plain;
  EXPECT_TRUE(DasCrypt::fromEncryptedText(text, plain));
  EXPECT_EQ(plain, "secret");
}

TEST_F(DeviceFolder, BelongsToOneProcessAtATime)
{
  const auto device = std::make_unique<host::Device>(settings());
  const pid_t other = ::fork();
  if (other == 0)
    ::_exit(holds(bringUpError(), path.string() + ": the device folder is in use already") ? 0 : 1);
  int status = -1;
  ::waitpid(other, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST_F(DeviceFolder, IsFreeAgainWhenItsProcessWasKilled)
{
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const pid_t other = ::fork();
  if (other == 0)
  {
    const host::Device device(settings());
    ::_exit(::write(ends[1], "x", 1) == 1 && ::pause() == 0 ? 0 : 1);
  }
  char byte = 0;
  EXPECT_EQ(::read(ends[0], &byte, 1), 1);
  EXPECT_TRUE(holds(bringUpError(), "in use already"));
  ::kill(other, SIGKILL);
  ::waitpid(other, nullptr, 0);
  EXPECT_EQ(bringUpError(), "");
}

TEST_F(DeviceFolder, SecondDeviceInAProcessIsRefused)
{
  auto device = std::make_unique<host::Device>(settings());
  const host::DeviceSettings elsewhere = {folder / "elsewhere", 1, 2, 0};
  EXPECT_EQ(errorOf([&] { host::Device second(elsewhere); }), "there is another device in this process");
  EXPECT_TRUE(holds(bringUpError(), "in use already"));
  device.reset();
  EXPECT_EQ(errorOf([&] { host::Device second(elsewhere); }), "");
}

TEST_F(DeviceFolder, ErrorNamesTheFileThatIsWrong)
{
  std::filesystem::create_directories(path / "das.key");
  EXPECT_EQ(bringUpError(), (path / "das.key").string() + ": is no regular file; move it away");
  std::filesystem::remove(path / "das.key");
  EXPECT_EQ(bringUpError(), "");
  std::filesystem::rename(path / "das.db", path / "ocms.db");
  EXPECT_EQ(bringUpError(), (path / "ocms.db").string() + ": is a database of another kind");
}

TEST_F(DeviceFolder, ThatIsAFileIsAnError)
{
  const auto file = folder / "file";
  hosttest::writeFile(file, "");
  EXPECT_TRUE(holds(errorOf([&] { host::Device device({file, 1, 2, 0}); }), file.string() + ": the device folder"));
  EXPECT_TRUE(holds(errorOf([&] { host::Device device({file / "x", 1, 2, 0}); }), "the device folder cannot be made"));
}

TEST_F(DeviceFolder, LogsIntoItsFolderUpToItsLevel)
{
  const host::Device device({path, 1, 4, 0});
  EXPECT_TRUE(loggingOnAppUni("Module", 4));
  EXPECT_FALSE(loggingOnAppUni("Module", 5));
  logAppUni("Module", "source", 4, 1, "for the folder");
  EXPECT_TRUE(holds(hosttest::contentOf(path / "log" / "device.log"), "for the folder\n"));
}

TEST_F(DeviceFolder, TakesItsKeyAwayWithIt)
{
  {
    const host::Device device(settings());
  }
  std::string text;
  EXPECT_FALSE(DasCrypt::toEncryptedText("secret", text));
}

namespace
{
/// A device that nobody ends before the process does.
std::optional<host::Device> staticDevice;
/// By the key of that device, at its begin.
std::string sealed;

bool isTimed(const std::string& name)
{
  const std::vector<host::CallTime> times = host::callTimes();
  return std::any_of(times.begin(), times.end(), [&](const host::CallTime& time) { return time.name == name; });
}

void useDevice()
{
  const host::Mark operation(host::MarkKind::operation, "an operation");
  Semaphore semaphore(1, 1, true);
  {
    const CriticalSection section(semaphore);
    const host::Mark callback(host::MarkKind::callback, "a callback");
  }
  host::markSecret("an.item");
  std::string opened;
  if ((sealed.empty() && !DasCrypt::toEncryptedText("a value", sealed)) ||
      !DasCrypt::fromEncryptedText(sealed, opened) || opened != "a value" ||
      holds(ClientUtils::hidePassword("an.item", opened), opened) || !isTimed("a callback"))
    std::_Exit(1);
}

/// Writes over what was freed, as any other code that runs then may.
void reuseFreedMemory()
{
  static std::vector<std::string> blocks;
  for (std::size_t size = 16; size <= 256; size += 16)
    for (int i = 0; i < 10; ++i)
      blocks.emplace_back(size, '\x7f');
}

/// Fails on demand, and only as long as that is demanded.
void meetFault()
{
  reuseFreedMemory();
  std::string text;
  const bool failed = !DasCrypt::toEncryptedText("a value", text);
  const std::size_t set = host::faults().size();
  host::endFaults();
  if (!failed || set != 1 || !DasCrypt::toEncryptedText("a value", text))
    std::_Exit(1);
}
} // namespace

/// In a process that has used nothing of it yet, so that it goes away behind all that it works with.
TEST(DeviceAtExit, WorksToItsVeryEnd)
{
  const hosttest::TemporaryFolder folder;
  const auto lateUser = [&]
  {
    std::atexit(
        []
        {
          useDevice();
          staticDevice.reset();
        });
    staticDevice.emplace(host::DeviceSettings{folder / "device", 1, 2, 0});
    useDevice();
    std::exit(0);
  };
  EXPECT_EXIT(lateUser(), testing::ExitedWithCode(0), "");
}

TEST(DeviceAtExit, MeetsItsFaultsToItsVeryEnd)
{
  const hosttest::TemporaryFolder folder;
  const auto lateUser = [&]
  {
    std::atexit(
        []
        {
          meetFault();
          staticDevice.reset();
        });
    staticDevice.emplace(host::DeviceSettings{folder / "device", 1, 2, 0});
    host::setFault({host::FaultPlace::encryption, host::FaultKind::fails, 2, {}});
    std::exit(0);
  };
  EXPECT_EXIT(lateUser(), testing::ExitedWithCode(0), "");
}
