// The key file, and texts that somebody changed.
#include <DasCrypt.h>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "FileCalls.h"
#include "HostTesting.h"
#include "SyncCounter.h"
#include "host/KeyFile.h"

namespace
{
using hosttest::errorOf;
class DasCryptKey : public testing::Test
{
protected:
  void TearDown() override
  {
    host::forgetKey();
  }
  std::string encrypted(const std::string& plain)
  {
    std::string text;
    EXPECT_TRUE(DasCrypt::toEncryptedText(plain, text));
    return text;
  }
  mode_t mode()
  {
    struct stat status = {};
    EXPECT_EQ(::stat(file.c_str(), &status), 0);
    return status.st_mode & 0777;
  }

  hosttest::TemporaryFolder folder;
  const std::filesystem::path file = folder / "das.key";
};
} // namespace

TEST_F(DasCryptKey, IsMadeOnFirstUseForItsOwnerAlone)
{
  const mode_t before = ::umask(0);
  host::useKeyFile(file);
  ::umask(before);
  EXPECT_EQ(mode(), 0600U);
  EXPECT_EQ(std::filesystem::file_size(file), 32U);
}

TEST_F(DasCryptKey, ReachesTheDiskAndLeavesNoOtherFileBehind)
{
  const int before = hosttest::syncCount();
  host::useKeyFile(file);
  EXPECT_GE(hosttest::syncCount(), before + 2) << "the file and its folder";
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST_F(DasCryptKey, IsNotThereWhenItCannotReachTheDisk)
{
  {
    const hosttest::FailingSync broken;
    EXPECT_NE(errorOf([&] { host::useKeyFile(file); }), "");
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(DasCryptKey, IsUsedAgainTheNextTime)
{
  host::useKeyFile(file);
  const std::string text = encrypted("secret");
  host::forgetKey();
  host::useKeyFile(file);
  std::string plain;
  EXPECT_TRUE(DasCrypt::fromEncryptedText(text, plain));
  EXPECT_EQ(plain, "secret");
}

TEST_F(DasCryptKey, AnotherKeyDoesNotOpenTheText)
{
  host::useKeyFile(file);
  const std::string text = encrypted("secret");
  host::useKeyFile(folder / "other.key");
  std::string plain = text;
  EXPECT_FALSE(DasCrypt::fromEncryptedText(text, plain));
  EXPECT_EQ(plain, text);
}

TEST_F(DasCryptKey, EveryKeyIsDifferent)
{
  host::useKeyFile(file);
  host::useKeyFile(folder / "other.key");
  EXPECT_NE(hosttest::contentOf(file), hosttest::contentOf(folder / "other.key"));
}

TEST_F(DasCryptKey, WithoutItBothDirectionsFail)
{
  host::useKeyFile(file);
  const std::string text = encrypted("secret");
  host::forgetKey();
  std::string out = "as it was";
  EXPECT_FALSE(DasCrypt::fromEncryptedText(text, out));
  EXPECT_EQ(out, "as it was");
  EXPECT_FALSE(DasCrypt::toEncryptedText("secret", out));
  EXPECT_EQ(out, "<NotEncrypted>there is no key</NotEncrypted>");
}

TEST_F(DasCryptKey, ThatCannotBeReadIsTheReasonForWhatIsNotEncrypted)
{
  std::filesystem::create_directory(file);
  EXPECT_NE(errorOf([&] { host::useKeyFile(file); }), "");
  std::string out;
  EXPECT_FALSE(DasCrypt::toEncryptedText("secret", out));
  EXPECT_EQ(out,
            "<NotEncrypted>there is no key: " + file.string() + ": is no regular file; move it away</NotEncrypted>");
}

TEST_F(DasCryptKey, WithAnotherOneTheUnopenedTextIsNotEncryptedAgain)
{
  host::useKeyFile(file);
  const std::string text = encrypted("secret");
  host::useKeyFile(folder / "other.key");
  std::string plain;
  EXPECT_FALSE(DasCrypt::fromEncryptedText(text, plain));
  EXPECT_FALSE(DasCrypt::toEncryptedText(text, plain));
  EXPECT_TRUE(hosttest::holds(plain, "<NotEncrypted>it is no value")) << plain;
  EXPECT_NE(encrypted("another value"), "");
}

TEST_F(DasCryptKey, WhatWasNeverEncryptedAndDoesNotOpenIsAnHonestValue)
{
  host::useKeyFile(file);
  std::string plain;
  for (const char* honest : {"", "hunter2", "aHVudGVyMg=="})
  {
    EXPECT_FALSE(DasCrypt::fromEncryptedText(honest, plain));
    EXPECT_NE(encrypted(honest), "");
  }
}

TEST_F(DasCryptKey, OfWrongSizeIsRefused)
{
  for (const std::string& content : {std::string(), std::string(31, 'k'), std::string(33, 'k')})
  {
    hosttest::writeFile(file, content);
    ::chmod(file.c_str(), 0600);
    EXPECT_EQ(errorOf([&] { host::useKeyFile(file); }),
              file.string() + ": a key has 32 bytes, not " + std::to_string(content.size()));
    EXPECT_EQ(hosttest::contentOf(file), content);
  }
}

TEST_F(DasCryptKey, OpenToOthersIsRefused)
{
  host::useKeyFile(file);
  for (const mode_t mode : {0640U, 0604U, 0620U, 0666U})
  {
    ::chmod(file.c_str(), mode);
    EXPECT_EQ(errorOf([&] { host::useKeyFile(file); }),
              file.string() + ": the key is open to others than its owner; its mode must be 0600: chmod 600 it");
  }
  ::chmod(file.c_str(), 0400);
  EXPECT_EQ(errorOf([&] { host::useKeyFile(file); }), "");
}

TEST_F(DasCryptKey, ThatIsNoFileOrCannotBeMadeIsRefusedByName)
{
  EXPECT_TRUE(hosttest::holds(errorOf([&] { host::useKeyFile(folder.path()); }), folder.path().string()));
  EXPECT_TRUE(hosttest::holds(errorOf([&] { host::useKeyFile(folder / "missing" / "k"); }), "missing/k"));
}

TEST_F(DasCryptKey, StaysInUseWhenAnotherOneIsRefused)
{
  host::useKeyFile(file);
  const std::string text = encrypted("secret");
  EXPECT_NE(errorOf([&] { host::useKeyFile(folder.path()); }), "");
  std::string plain;
  EXPECT_TRUE(DasCrypt::fromEncryptedText(text, plain));
}

TEST_F(DasCryptKey, MadeByManyThreadsAtOnceIsOneKey)
{
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t)
    threads.emplace_back([this] { host::useKeyFile(file); });
  for (std::thread& thread : threads)
    thread.join();
  const std::string text = encrypted("secret");
  host::useKeyFile(file);
  std::string plain;
  EXPECT_TRUE(DasCrypt::fromEncryptedText(text, plain));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST_F(DasCryptKey, SameValueNeverMakesTheSameText)
{
  host::useKeyFile(file);
  std::set<std::string> texts;
  for (int i = 0; i < 50; ++i)
    texts.insert(encrypted("secret"));
  EXPECT_EQ(texts.size(), 50U);
}

TEST_F(DasCryptKey, TextChangedAnywhereFailsAndLeavesTheOutputAsItWas)
{
  host::useKeyFile(file);
  const std::string text = encrypted("secret");
  for (std::size_t i = 0; i < text.size(); ++i)
  {
    std::string tampered = text;
    tampered[i] = tampered[i] == 'A' ? 'B' : 'A';
    std::string out = "as it was";
    EXPECT_FALSE(DasCrypt::fromEncryptedText(tampered, out)) << i;
    EXPECT_EQ(out, "as it was") << i;
  }
}

TEST_F(DasCryptKey, TextCutOrExtendedFails)
{
  host::useKeyFile(file);
  const std::string text = encrypted("");
  for (std::size_t length = 0; length < text.size(); ++length)
  {
    std::string out = "as it was";
    EXPECT_FALSE(DasCrypt::fromEncryptedText(text.substr(0, length), out)) << length;
    EXPECT_EQ(out, "as it was");
  }
  std::string out;
  for (const char* more : {"A", "AAAA", " ", "\n"})
    EXPECT_FALSE(DasCrypt::fromEncryptedText(text + more, out)) << more;
}

TEST_F(DasCryptKey, IsWrittenWholeHoweverLittleTheSystemTakesAtATime)
{
  const hosttest::StingyWrites writes;
  host::useKeyFile(file);
  EXPECT_EQ(std::filesystem::file_size(file), 32U);
}

TEST_F(DasCryptKey, LeavesTheOneThatAnotherProcessMadeMeanwhile)
{
  const std::string theirs(32, 'k');
  hosttest::FileCalls calls;
  calls.atTheNext(
      [&]
      {
        hosttest::writeFile(file, theirs);
        std::filesystem::permissions(file, std::filesystem::perms(0600));
      });
  host::useKeyFile(file);
  EXPECT_EQ(hosttest::contentOf(file), theirs);
  const std::string text = encrypted("secret");
  host::useKeyFile(folder / "other.key");
  host::useKeyFile(file);
  std::string plain;
  EXPECT_TRUE(DasCrypt::fromEncryptedText(text, plain)) << "encrypted by the key that stays";
}

TEST_F(DasCryptKey, StandsUnderItsNameOnlyWhenItIsOnTheDisk)
{
  const hosttest::FileCalls calls;
  host::useKeyFile(file);
  const std::vector<std::string> noted = calls.noted();
  ASSERT_EQ(noted.size(), 3U);
  EXPECT_EQ(noted[0].rfind("sync " + file.string() + ".", 0), 0U) << noted[0];
  EXPECT_EQ(noted[1], "link " + file.string());
  EXPECT_EQ(noted[2], "sync " + folder.path().string());
}

TEST_F(DasCryptKey, ThatIsAPipeIsRefusedAndLeftThere)
{
  ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
  EXPECT_EQ(errorOf([&] { host::useKeyFile(file); }), file.string() + ": is no regular file; move it away");
  EXPECT_TRUE(std::filesystem::is_fifo(file));
}

TEST_F(DasCryptKey, ThatIsALinkToNothingIsRefused)
{
  std::filesystem::create_symlink(folder / "elsewhere.key", file);
  EXPECT_EQ(errorOf([&] { host::useKeyFile(file); }), file.string() + ": went away while it was made");
  EXPECT_FALSE(std::filesystem::exists(folder / "elsewhere.key"));
}
