// What a device's files hold after its process was killed at any moment.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>

#include "HostTesting.h"
#include "host/DataAccessService.h"
#include "host/LocalMgmtStore.h"

namespace
{
/// A running victim, and what it told.
class Writer
{
public:
  Writer(const std::filesystem::path& folder, long first)
  {
    int ends[2];
    if (::pipe(ends) != 0)
      throw std::runtime_error("no pipe");
    process = ::fork();
    if (process == 0)
    {
      ::dup2(ends[1], STDOUT_FILENO);
      ::close(ends[0]);
      ::close(ends[1]);
      ::execl(DURABILITY_WRITER, DURABILITY_WRITER, folder.c_str(), std::to_string(first).c_str(), nullptr);
      ::_exit(127);
    }
    ::close(ends[1]);
    output = ends[0];
  }

  /// Waits until it told something, so that the killing hits it at work.
  void awaitFirstLine()
  {
    char byte = 0;
    if (::read(output, &byte, 1) == 1)
      told += byte;
  }

  /// Kills it and returns the last number it told, or `otherwise` when it told none. False as `killed` means that it
  /// had ended by itself.
  long killed(long otherwise, bool& byUs)
  {
    ::kill(process, SIGKILL);
    int status = 0;
    ::waitpid(process, &status, 0);
    byUs = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    char buffer[4096];
    for (ssize_t size = 0; (size = ::read(output, buffer, sizeof buffer)) > 0;)
      told.append(buffer, static_cast<std::size_t>(size));
    ::close(output);
    const std::size_t end = told.rfind('\n');
    if (end == std::string::npos)
      return otherwise;
    const std::size_t before = told.rfind('\n', end - 1);
    return std::stol(told.substr(before == std::string::npos ? 0 : before + 1));
  }

private:
  pid_t process = -1;
  int output = -1;
  std::string told;
};

/// The one number that all places of a change hold; fails when they differ.
long onlyNumber(const std::set<std::string>& numbers)
{
  EXPECT_EQ(numbers.size(), 1U) << "a request was applied in half";
  return numbers.empty() ? -1 : std::stol(*numbers.begin());
}

long storedByDas(const std::filesystem::path& file)
{
  host::DataAccessService das(file);
  std::set<std::string> numbers;
  for (const char* row : {"1", "2", "3"})
    for (const char* column : {"A", "B"})
      numbers.insert(das.storedCell("Rows", column, "Idx", row).value_or("-1"));
  return onlyNumber(numbers);
}

long storedByStore(const std::filesystem::path& file)
{
  host::LocalMgmtStore store(file);
  std::set<std::string> numbers;
  for (const char* rootId : {"a", "b", "c"})
    numbers.insert(store.value(rootId).value_or("-1"));
  return onlyNumber(numbers);
}
} // namespace

TEST(Durability, KilledAtAnyMomentNothingAnsweredIsLostAndNothingIsHalfApplied)
{
  const hosttest::TemporaryFolder folder;
  long last = 0;
  for (int round = 0; round < 30; ++round)
  {
    Writer writer(folder.path(), last + 1);
    writer.awaitFirstLine();
    std::this_thread::sleep_for(std::chrono::microseconds(700 * round));
    bool byUs = false;
    const long answered = writer.killed(last, byUs);
    ASSERT_TRUE(byUs) << "the writer ended by itself";
    ASSERT_GT(answered, last);

    const long inDas = storedByDas(folder / "das.db");
    EXPECT_GE(inDas, answered);
    EXPECT_LE(inDas, answered + 1);
    const long inStore = storedByStore(folder / "ocms.db");
    EXPECT_GE(inStore, answered);
    EXPECT_LE(inStore, answered + 1);
    last = answered + 1;
  }
}

TEST(Durability, KilledWhileItIsMadeADeviceComesUpTheNextTime)
{
  for (int round = 0; round < 20; ++round)
  {
    const hosttest::TemporaryFolder folder;
    Writer writer(folder.path(), 1);
    std::this_thread::sleep_for(std::chrono::microseconds(500 * round));
    bool byUs = false;
    writer.killed(0, byUs);
    ASSERT_TRUE(byUs) << "the writer ended by itself";
    Writer again(folder.path(), 1);
    again.awaitFirstLine();
    EXPECT_GE(again.killed(0, byUs), 1);
    ASSERT_TRUE(byUs) << "the writer ended by itself";
  }
}
