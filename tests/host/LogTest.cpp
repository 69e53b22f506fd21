// The device's log: gate, lines and sinks.
#include <poll.h>
#include <pty.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>
#include <stdexcept>
#include <thread>

#include "HostTesting.h"
#include "host/DeviceLog.h"

namespace
{
using hosttest::contentOf;
using hosttest::linesOf;

/// A terminal in place of standard error, where the system has pseudo-terminals; a bare chroot has none.
class Terminal
{
public:
  Terminal() : standardError(::dup(STDERR_FILENO))
  {
    int own = -1;
    if (::openpty(&screen, &own, nullptr, nullptr, nullptr) != 0)
      return;
    ::dup2(own, STDERR_FILENO);
    ::close(own);
    ::setenv("TERM", "xterm-256color", 1);
  }
  ~Terminal()
  {
    ::dup2(standardError, STDERR_FILENO);
    ::close(standardError);
    ::close(screen);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  bool isThere() const
  {
    return screen != -1;
  }

  /// What it showed up to some text, which may come in pieces.
  std::string shownUpTo(const std::string& end) const
  {
    std::string text;
    char byte = 0;
    pollfd ready = {screen, POLLIN, 0};
    while (!hosttest::holds(text, end) && ::poll(&ready, 1, 20000) == 1 && ::read(screen, &byte, 1) == 1)
      text += byte;
    return text;
  }

private:
  int standardError;
  int screen = -1;
};

class Log : public testing::Test
{
protected:
  void SetUp() override
  {
    host::openLog({file, 0, 6});
  }
  void TearDown() override
  {
    host::closeLog();
    host::setLogLevel(2);
  }
  /// The text behind time, level, module and place.
  static std::string textOf(const std::string& line)
  {
    const std::string mark = "source:7 ";
    return line.substr(line.find(mark) + mark.size());
  }

  hosttest::TemporaryFolder folder;
  const std::filesystem::path file = folder / "log" / "device.log";
};

void logText(const std::string& text, int level = 2)
{
  logAppUni("Module", "source", level, 7, "%s", text.c_str());
}
} // namespace

TEST_F(Log, LineHoldsTimeLevelModulePlaceAndText)
{
  logAppUni("Module", "./src/Module", 3, 42, "%d of \"%s\"", 7, "nine");
  const std::regex expected(
      R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}[+-]\d\d:\d\d 3 Module \./src/Module:42 7 of "nine"\n)");
  EXPECT_TRUE(std::regex_match(contentOf(file), expected)) << contentOf(file);
}

TEST_F(Log, CallIsAlwaysOneLine)
{
  const std::vector<std::pair<std::string, std::string>> table = {
      {"ends\n", "ends"},
      {"ends twice\n\n", "ends twice\\n"},
      {"a\nb\r\tc", "a\\nb\\r\\tc"},
      {"\x1B[31m", "\\x1b[31m"},
      {"\n", ""},
      {"", ""},
      {"back\\n", "back\\n"},
      {"{} {0} %s", "{} {0} %s"},
      {"\xC3\xA4\xFF", "\xC3\xA4\\xff"},
  };
  for (const auto& [text, written] : table)
  {
    logText(text);
    EXPECT_EQ(textOf(linesOf(file).back()), written);
  }
  EXPECT_EQ(linesOf(file).size(), table.size());
}

TEST_F(Log, LongLineIsWrittenWhole)
{
  const std::string text(1000 * 1000, 'x');
  logText(text);
  EXPECT_EQ(textOf(linesOf(file).back()), text);
}

TEST_F(Log, LineIsWrittenWhateverTheGateSays)
{
  host::setLogLevel(0);
  logText("all the same", 6);
  EXPECT_EQ(linesOf(file).size(), 1U);
}

TEST_F(Log, GateIsOpenUpToTheLevel)
{
  EXPECT_TRUE(loggingOnAppUni("Module", 2));
  EXPECT_FALSE(loggingOnAppUni("Module", 3));
  host::setLogLevel(5);
  EXPECT_EQ(host::logLevel(), 5);
  EXPECT_TRUE(loggingOnAppUni("Module", 5));
  EXPECT_FALSE(loggingOnAppUni("Module", 6));
}

TEST_F(Log, ModuleMayHaveAGateOfItsOwn)
{
  host::setLogLevel("Loud", 6);
  host::setLogLevel("Quiet", 0);
  EXPECT_TRUE(loggingOnAppUni("Loud", 6));
  EXPECT_FALSE(loggingOnAppUni("Quiet", 2));
  EXPECT_FALSE(loggingOnAppUni("Other", 3));
  host::clearLogLevel("Loud");
  EXPECT_FALSE(loggingOnAppUni("Loud", 6));
  EXPECT_FALSE(loggingOnAppUni("Quiet", 2));
  host::clearLogLevel("Quiet");
  EXPECT_TRUE(loggingOnAppUni("Quiet", 2));
}

TEST_F(Log, SinksHaveLevelsOfTheirOwn)
{
  host::openLog({file, 2, 4});
  testing::internal::CaptureStderr();
  for (int level = 2; level <= 6; ++level)
    logText("level " + std::to_string(level), level);
  const std::string console = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(hosttest::holds(console, "level 2\n"));
  EXPECT_FALSE(hosttest::holds(console, "level 3"));
  EXPECT_EQ(linesOf(file).size(), 3U);
}

TEST_F(Log, LevelsBeyondTheEndsCountAsTheEnds)
{
  host::openLog({file, 0, 6});
  logText("very detailed", 99);
  EXPECT_EQ(linesOf(file).size(), 1U);
}

TEST_F(Log, ConsoleHasNoColourWhenItIsNoTerminal)
{
  host::openLog({file, 6, 6});
  testing::internal::CaptureStderr();
  logText("plain", 2);
  EXPECT_FALSE(hosttest::holds(testing::internal::GetCapturedStderr(), "\x1B"));
}

TEST_F(Log, ConsoleHasColourOnATerminal)
{
  const Terminal terminal;
  if (!terminal.isThere())
    GTEST_SKIP() << "this system has no pseudo-terminals";
  host::openLog({file, 6, 6});
  logText("failure", 2);
  logText("trace", 5);
  const std::string shown = terminal.shownUpTo("trace");
  EXPECT_TRUE(std::regex_search(shown, std::regex("\x1B\\[[^\n]*failure\x1B\\[m"))) << shown;
  EXPECT_FALSE(hosttest::holds(contentOf(file), "\x1B"));
}

TEST_F(Log, GoesToTheConsoleWhileNoFileIsOpen)
{
  host::closeLog();
  testing::internal::CaptureStderr();
  logText("nowhere else to go", 6);
  EXPECT_TRUE(hosttest::holds(testing::internal::GetCapturedStderr(), "6 Module source:7 nowhere else to go\n"));
  EXPECT_EQ(contentOf(file), "");
}

TEST_F(Log, FileIsContinuedWhenOpenedAgain)
{
  logText("first");
  host::openLog({file, 0, 6});
  logText("second");
  EXPECT_EQ(linesOf(file).size(), 2U);
}

TEST_F(Log, FileRotatesAndKeepsTwoOlderOnes)
{
  const std::string megabyte(1024 * 1024, 'x');
  for (int i = 0; i < 21; ++i)
    logText(megabyte);
  EXPECT_TRUE(std::filesystem::exists(folder / "log" / "device.1.log"));
  EXPECT_TRUE(std::filesystem::exists(folder / "log" / "device.2.log"));
  EXPECT_FALSE(std::filesystem::exists(folder / "log" / "device.3.log"));
  for (const char* name : {"device.log", "device.1.log", "device.2.log"})
    EXPECT_LE(std::filesystem::file_size(folder / "log" / name), 5U * 1024 * 1024) << name;
}

TEST_F(Log, FileThatCannotBeOpenedIsAnErrorAndTheLogStays)
{
  const std::string error = hosttest::errorOf([&] { host::openLog({folder.path(), 0, 6}); });
  EXPECT_EQ(error.rfind(folder.path().string() + ": the log cannot be opened: ", 0), 0U) << error;
  logText("still there");
  EXPECT_EQ(linesOf(file).size(), 1U);
}

TEST_F(Log, ThreadsDoNotMixTheirLines)
{
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back(
        []
        {
          for (int i = 0; i < 100; ++i)
            logText(std::string(2000, 'x'));
        });
  for (std::thread& thread : threads)
    thread.join();
  const auto lines = linesOf(file);
  ASSERT_EQ(lines.size(), 400U);
  for (const std::string& line : lines)
    EXPECT_EQ(textOf(line), std::string(2000, 'x'));
}

TEST_F(Log, ListenerHearsLinesWithoutTheirTimeUntilItIsTakenAway)
{
  std::vector<std::string> heard;
  host::listenToLog([&](const host::LogLine& line)
                    { heard.push_back(line.module + " " + std::to_string(line.level) + " " + line.text); });
  logAppUni("Bell", "Bell.cpp", 5, 12, "%s\n", "two\nlines");
  host::listenToLog({});
  logText("nobody hears it");
  EXPECT_EQ(heard, std::vector<std::string>{"Bell 5 two\nlines"});
  EXPECT_EQ(linesOf(file).size(), 2U);
}

/// In a process that has not used the log yet, so that what was asked for at the exit comes behind the log's own end.
TEST(LogAtExit, TakesLinesFromWhatGoesAwayAfterEverythingElse)
{
  const auto lateUser = []
  {
    std::atexit([] { logText("late"); });
    logText("early");
    std::exit(0);
  };
  EXPECT_EXIT(lateUser(), testing::ExitedWithCode(0), "early[^\n]*\n[^\n]*late");
}
