// The device's log and its gate.
#include <logAppUni.h>

#include <string>
#include <thread>
#include <vector>

#include "PlatformFixture.h"

namespace
{
const char* const module = "ServiceDataManager";
const char* const source = "./src/ServiceDataManager";

class LogContract : public contract::PlatformTest
{
protected:
  std::size_t linesAdded()
  {
    return platform->logLines().size() - before;
  }

  std::string lastLine()
  {
    const std::vector<std::string> lines = platform->logLines();
    return lines.empty() ? "" : lines.back();
  }

  std::size_t before = platform == nullptr ? 0 : platform->logLines().size();
};
} // namespace

TEST_F(LogContract, WritesWhatPrintfWouldFormat)
{
  logAppUni(module, source, 2, 17, "%s has %d of %5.1f%%", "value", -7, 12.5);
  EXPECT_EQ(linesAdded(), 1U);
  EXPECT_NE(lastLine().find("value has -7 of  12.5%"), std::string::npos) << lastLine();
}

TEST_F(LogContract, WritesALineWhateverTheGateSays)
{
  std::size_t closed = 0;
  for (int level = 2; level <= 6; ++level)
  {
    closed += loggingOnAppUni(module, level) ? 0U : 1U;
    logAppUni(module, source, level, 1, "level %d", level);
  }
  EXPECT_EQ(linesAdded(), 5U);
  EXPECT_GT(closed, 0U) << "with the gate wide open this shows nothing";
}

TEST_F(LogContract, AskingTheGateWritesNothing)
{
  for (const char* asked : {"", module, "another module"})
    for (int level = -1; level <= 7; ++level)
      loggingOnAppUni(asked, level);
  EXPECT_EQ(linesAdded(), 0U);
}

TEST_F(LogContract, WritesLongTextsWhole)
{
  const std::string request = "<a>" + std::string(300000, 'x') + "</a>";
  logAppUni(module, source, 5, 1, "request \"%s\"", request.c_str());
  EXPECT_EQ(linesAdded(), 1U);
  EXPECT_NE(lastLine().find("request \"" + request + "\""), std::string::npos);
}

TEST_F(LogContract, TakesTextsWithLineFeeds)
{
  for (const char* text : {"\n", "ends with one\n", "holds\none", ""})
    logAppUni(module, source, 3, 1, "%s", text);
  EXPECT_EQ(linesAdded(), 4U);
}

TEST_F(LogContract, TakesLinesOfSeveralThreadsAtOnce)
{
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread)
    threads.emplace_back(
        [thread]
        {
          for (int line = 0; line < 250; ++line)
            logAppUni(module, source, 4, line + 1, "thread %d line %d", thread, line);
        });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(linesAdded(), 1000U);
}
