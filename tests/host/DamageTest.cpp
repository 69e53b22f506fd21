// A device whose files are damaged comes up all the same, says so, and keeps what was there.
#include <DasCrypt.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include <functional>

#include "FileCalls.h"
#include "HostTesting.h"
#include "host/Device.h"
#include "host/keepAside.h"

namespace
{
using hosttest::contentOf;
using hosttest::holds;
using hosttest::writeFile;

class DamagedDevice : public testing::Test
{
protected:
  DamagedDevice()
  {
    host::Device device(settings());
    device.das().provision({{"Plain", "", {"A"}, {}}});
    set(device, std::string(20000, 'v'));
    device.store().change("item", std::string(20000, 'v'));
  }

  host::DeviceSettings settings() const
  {
    return {path, 1, 0, 0};
  }
  static void set(host::Device& device, const std::string& value)
  {
    const std::string request = hosttest::updateRequest("Plain", "<A>" + value + "</A>");
    ASSERT_EQ(hosttest::send(device.das(), request), hosttest::updateReply("Plain"));
  }
  /// Brings the device up and down again and returns all it has to say, a line each.
  std::string notices() const
  {
    host::Device device(settings());
    std::string all;
    for (const std::string& notice : device.notices())
      all += notice + "\n";
    return all;
  }
  std::string file(const std::string& name) const
  {
    return (path / name).string();
  }

  hosttest::TemporaryFolder folder;
  const std::filesystem::path path = folder / "device";
};

struct Damage
{
  const char* name;
  std::function<std::string(std::string)> to;
};

const Damage damages[] = {
    {"GarbageInPlaceOfTheHeader", [](std::string content) { return content.replace(0, 100, 100, 'x'); }},
    {"ZeroesInPlaceOfTheHeader", [](std::string content) { return content.replace(0, 100, 100, '\0'); }},
    {"CutOffWithinAPage", [](std::string content) { return content.substr(0, 4096 * 3 + 100); }},
    {"CutOffWithinTheHeader", [](std::string content) { return content.substr(0, 40); }},
    {"APageOfZeroes", [](std::string content) { return content.replace(4096, 4096, 4096, '\0'); }},
    {"AllPagesButTheFirstOfZeroes",
     [](std::string content)
     {
       const std::size_t rest = content.size() - 4096;
       return content.replace(4096, rest, rest, '\0');
     }},
    {"Text", [](std::string) { return std::string("not a database"); }}};

class DamagedDatabase : public DamagedDevice, public testing::WithParamInterface<std::tuple<const char*, Damage>>
{
};
} // namespace

TEST_F(DamagedDevice, HasNothingToSayWhenNothingIsDamaged)
{
  EXPECT_EQ(notices(), "");
}

TEST_P(DamagedDatabase, IsKeptAsideAndBegunAnew)
{
  const std::string name = std::get<0>(GetParam());
  const std::string damaged = std::get<1>(GetParam()).to(contentOf(path / name));
  writeFile(path / name, damaged);
  const std::string told = notices();
  EXPECT_EQ(told.rfind(file(name) + ": ", 0), 0U) << told;
  EXPECT_TRUE(holds(told, "; it is kept as " + file(name + ".damaged-1") +
                              " and an empty one takes its place: put a "
                              "backup there, or set the values again"));
  EXPECT_EQ(contentOf(path / (name + ".damaged-1")), damaged);
  EXPECT_EQ(notices(), "") << "the new one is sound";
  host::Device device(settings());
  device.das().provision({{"Plain", "", {"A"}, {}}});
  set(device, "again");
  device.store().change("item", "again");
  EXPECT_EQ(device.store().value("item"), "again");
}

INSTANTIATE_TEST_SUITE_P(OfEitherKind, DamagedDatabase,
                         testing::Combine(testing::Values("das.db", "ocms.db"), testing::ValuesIn(damages)),
                         [](const auto& instance)
                         {
                           const std::string name = std::get<0>(instance.param);
                           return name.substr(0, name.find('.')) + std::get<1>(instance.param).name;
                         });

TEST_F(DamagedDevice, KeepsTheOtherDatabaseAsItIs)
{
  writeFile(path / "das.db", "not a database");
  host::Device device(settings());
  EXPECT_EQ(device.store().value("item"), std::string(20000, 'v'));
}

TEST_F(DamagedDevice, KeepsEveryDamagedFile)
{
  for (const char* content : {"first", "second", "third"})
  {
    writeFile(path / "das.db", content);
    notices();
  }
  EXPECT_EQ(contentOf(path / "das.db.damaged-1"), "first");
  EXPECT_EQ(contentOf(path / "das.db.damaged-2"), "second");
  EXPECT_EQ(contentOf(path / "das.db.damaged-3"), "third");
}

TEST_F(DamagedDevice, KeepsTheChangesThatStandBesideADatabase)
{
  writeFile(path / "das.db", "");
  writeFile(path / "das.db-wal", "changes");
  EXPECT_TRUE(holds(notices(), file("das.db") + ": is empty, but there are changes to it; it is kept as "));
  EXPECT_EQ(contentOf(path / "das.db.damaged-1"), "");
  EXPECT_EQ(contentOf(path / "das.db.damaged-1-wal"), "changes");
}

TEST_F(DamagedDevice, SaysThatADatabaseWasEmptied)
{
  writeFile(path / "das.db", "");
  EXPECT_TRUE(
      holds(notices(), file("das.db") + ": is empty, as after a power cut while it was made, and is begun anew"));
  EXPECT_FALSE(std::filesystem::exists(path / "das.db.damaged-1"));
}

TEST_F(DamagedDevice, WithAKeyOfTheWrongSizeMakesANewOne)
{
  for (const char* content : {"too short", "short as well"})
  {
    writeFile(path / "das.key", content);
    const std::string told = notices();
    EXPECT_TRUE(holds(told, file("das.key") + ": a key has 32 bytes, not ")) << told;
    EXPECT_TRUE(holds(told, " and a new one was made: put the right key back, or set the encrypted values again"));
  }
  EXPECT_EQ(contentOf(path / "das.key.damaged-1"), "too short");
  EXPECT_EQ(contentOf(path / "das.key.damaged-2"), "short as well");
  EXPECT_EQ(contentOf(path / "das.key").size(), 32U);
  struct stat status = {};
  ASSERT_EQ(::stat(file("das.key").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(DamagedDevice, KeepsWhatAWrongKeyDoesNotOpen)
{
  std::string sealed;
  {
    host::Device device(settings());
    ASSERT_TRUE(DasCrypt::toEncryptedText("secret", sealed));
    set(device, sealed);
  }
  const std::string rightKey = contentOf(path / "das.key");
  writeFile(path / "das.key", std::string(32, 'w'));
  std::string plain;
  {
    host::Device device(settings());
    EXPECT_FALSE(DasCrypt::fromEncryptedText(device.das().storedCell("Plain", "A", "", "").value_or(""), plain));
  }
  writeFile(path / "das.key", rightKey);
  host::Device device(settings());
  EXPECT_TRUE(DasCrypt::fromEncryptedText(device.das().storedCell("Plain", "A", "", "").value_or(""), plain));
  EXPECT_EQ(plain, "secret");
}

TEST_F(DamagedDevice, NeverReplacesWhatWasKeptAside)
{
  writeFile(path / "x", "new");
  writeFile(path / "x.damaged-1", "old");
  writeFile(path / "x.damaged-2-wal", "old changes");
  EXPECT_EQ(host::keepAside(path / "x"), path / "x.damaged-3");
  EXPECT_EQ(contentOf(path / "x.damaged-1"), "old");
  EXPECT_EQ(contentOf(path / "x.damaged-2-wal"), "old changes");
  EXPECT_EQ(contentOf(path / "x.damaged-3"), "new");
}

TEST_F(DamagedDevice, KeepsTheDatabaseItselfAsideLastAndMakesItLast)
{
  const std::string aside = file("x.damaged-1");
  for (const char* part : {"", "-wal", "-shm"})
    writeFile(path / (std::string("x") + part), part);
  const hosttest::FileCalls calls;
  host::keepAside(path / "x");
  EXPECT_EQ(calls.noted(), (std::vector<std::string>{"rename " + file("x-shm") + " " + aside + "-shm",
                                                     "rename " + file("x-wal") + " " + aside + "-wal",
                                                     "rename " + file("x") + " " + aside, "sync " + path.string()}));
}

TEST_F(DamagedDevice, TakesALinkToNothingForAnEarlierFileKeptAside)
{
  for (const char* name : {"x.damaged-1", "x.damaged-2-wal", "x.damaged-3-shm"})
    std::filesystem::create_symlink(path / "nowhere", path / name);
  writeFile(path / "x", "new");
  EXPECT_EQ(host::keepAside(path / "x"), path / "x.damaged-4");
  EXPECT_TRUE(std::filesystem::is_symlink(path / "x.damaged-1"));
}
