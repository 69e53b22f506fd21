// The security log's lines.
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <thread>

#include "FileCalls.h"
#include "HostTesting.h"
#include "Meanwhile.h"
#include "SyncCounter.h"
#include "host/SecurityLogService.h"

namespace
{
using hosttest::contentOf;
using hosttest::errorOf;
using hosttest::linesOf;
using Texts = std::vector<std::string>;

constexpr time_t someTime = 1700000000;
const std::string someTimeText = "2023-11-14T22:13:20Z";

class SecurityLog : public testing::Test
{
protected:
  static void log(host::SecurityLogService& service, const std::string& record)
  {
    service.logSecurityEvent(someTime, 4, 1, 5, 3, false, record, "", "");
  }
  static std::string lineOf(const std::string& record)
  {
    return someTimeText + "\t4\t1\t5\t3\tok\t" + record + "\t-\t-";
  }

  hosttest::TemporaryFolder folder;
  const std::filesystem::path file = folder / "security.log";
};
} // namespace

TEST_F(SecurityLog, WritesOneLineWithAllFields)
{
  host::SecurityLogService service(file);
  service.logSecurityEvent(someTime, 4, 1, 5, 3, false, "Sch set Col(val)", "admin", "10.0.0.1");
  service.logSecurityEvent(someTime + 1, -4, 10, 0, 3, true, "Sch set Col(***)", "", "");
  EXPECT_EQ(contentOf(file), "2023-11-14T22:13:20Z\t4\t1\t5\t3\tok\tSch set Col(val)\tadmin\t10.0.0.1\n"
                             "2023-11-14T22:13:21Z\t-4\t10\t0\t3\tfailed\tSch set Col(***)\t-\t-\n");
}

TEST_F(SecurityLog, WritesTimesToTheEndOf32BitsAndBehindItWhereATimeHasMore)
{
  std::vector<std::pair<std::int64_t, std::string>> table = {
      {0, "1970-01-01T00:00:00Z"},
      {0x7FFFFFFF, "2038-01-19T03:14:07Z"},
      {-1, "1969-12-31T23:59:59Z"}, // what the C library answers once a time of 32 bits is over
      {-0x80000000LL, "1901-12-13T20:45:52Z"},
  };
  if (sizeof(time_t) > 4)
    table.emplace_back(0x80000000LL, "2038-01-19T03:14:08Z");
  host::SecurityLogService service(file);
  for (const auto& [when, written] : table)
  {
    service.logSecurityEvent(static_cast<time_t>(when), 4, 1, 5, 3, false, "r", "", "");
    EXPECT_EQ(linesOf(file).back().substr(0, written.size() + 1), written + "\t");
  }
}

TEST_F(SecurityLog, RecordIsAlwaysOneLine)
{
  const std::vector<std::pair<std::string, std::string>> table = {
      {"a\nb", "a\\nb"},
      {"a\r\nb", "a\\r\\nb"},
      {"a\tb", "a\\tb"},
      {std::string("a\0b", 3), "a\\x00b"},
      {"\x1B[31m\x7F", "\\x1b[31m\\x7f"},
      {"\xC2\x85\xC2\x9B", "\\u0085\\u009b"},
      {"\xE2\x80\xA8\xE2\x80\xA9", "\\u2028\\u2029"},
      {"\xE2\x80\x8F\xD8\x9C\xE2\x80\xAE\xE2\x81\xA6", "\\u200f\\u061c\\u202e\\u2066"},
      {"\xFF\xC3(", "\\xff\\xc3("},
      {"C:\\n", "C:\\\\n"},
      {"\xC3\xA4 \xF0\x9F\x98\x80", "\xC3\xA4 \xF0\x9F\x98\x80"},
      {"", "-"},
  };
  host::SecurityLogService service(file);
  for (const auto& [record, written] : table)
  {
    log(service, record);
    EXPECT_EQ(linesOf(file).back(), lineOf(written));
  }
  EXPECT_EQ(linesOf(file).size(), table.size());
}

TEST_F(SecurityLog, UserAndOriginCannotBreakLinesEither)
{
  host::SecurityLogService service(file);
  service.logSecurityEvent(someTime, 4, 1, 5, 3, false, "r", "a\nb", "c\td");
  EXPECT_EQ(contentOf(file), someTimeText + "\t4\t1\t5\t3\tok\tr\ta\\nb\tc\\td\n");
}

TEST_F(SecurityLog, KeepsWhatIsThere)
{
  {
    host::SecurityLogService service(file);
    log(service, "first");
  }
  host::SecurityLogService service(file);
  log(service, "second");
  EXPECT_EQ(linesOf(file), (Texts{lineOf("first"), lineOf("second")}));
}

TEST_F(SecurityLog, EndsALineThatWasCutOffSoThatItCannotPassForARecord)
{
  hosttest::writeFile(file, "whole\ncut o");
  host::SecurityLogService service(file);
  EXPECT_EQ(contentOf(file), "whole\ncut o\t\\unfinished\n");
  log(service, "next");
  log(service, "after");
  EXPECT_EQ(linesOf(file), (Texts{"whole", "cut o\t\\unfinished", lineOf("next"), lineOf("after")}));
}

TEST_F(SecurityLog, EndsALineThatWasCutOffMeanwhile)
{
  host::SecurityLogService service(file);
  hosttest::writeFile(file, "cut o");
  log(service, "next");
  EXPECT_EQ(linesOf(file), (Texts{"cut o\t\\unfinished", lineOf("next")}));
}

TEST_F(SecurityLog, MarkOfACutOffLineIsNoFieldOfARecord)
{
  host::SecurityLogService service(file);
  service.logSecurityEvent(someTime, 4, 1, 5, 3, false, "r", "u", "\\unfinished");
  EXPECT_EQ(contentOf(file), someTimeText + "\t4\t1\t5\t3\tok\tr\tu\t\\\\unfinished\n");
}

TEST_F(SecurityLog, GoesOnAtTheEndWhenAnotherWroteThere)
{
  host::SecurityLogService service(file);
  log(service, "first");
  hosttest::writeFile(file, "rewritten by somebody\n");
  log(service, "second");
  EXPECT_EQ(linesOf(file), (Texts{"rewritten by somebody", lineOf("second")}));
}

TEST_F(SecurityLog, EveryRecordReachesTheDisk)
{
  host::SecurityLogService service(file);
  for (int i = 0; i < 3; ++i)
  {
    const int before = hosttest::syncCount();
    log(service, "record");
    EXPECT_EQ(hosttest::syncCount(), before + 1);
  }
}

TEST_F(SecurityLog, RecordThatCannotReachTheDiskIsAnError)
{
  host::SecurityLogService service(file);
  const hosttest::FailingSync broken;
  EXPECT_EQ(errorOf([&] { log(service, "record"); }),
            file.string() + ": cannot be made to last: Input/output error; look whether its disk is broken");
}

TEST_F(SecurityLog, RecordThatCannotBeWrittenIsAnError)
{
  host::SecurityLogService service("/dev/full");
  EXPECT_EQ(errorOf([&] { log(service, "record"); }),
            "/dev/full: cannot be written: No space left on device; make room on its disk");
}

TEST_F(SecurityLog, FileThatCannotBeOpenedIsAnError)
{
  EXPECT_EQ(errorOf([&] { host::SecurityLogService service(folder / "missing" / "log"); }),
            (folder / "missing" / "log").string() + ": the security log cannot be opened: No such file or directory");
  EXPECT_TRUE(hosttest::holds(errorOf([&] { host::SecurityLogService service(folder.path()); }), "Is a directory"));
}

TEST_F(SecurityLog, IsForItsOwnerAlone)
{
  const mode_t before = ::umask(0);
  const host::SecurityLogService service(file);
  ::umask(before);
  struct stat status = {};
  ASSERT_EQ(::stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(SecurityLog, TellsItsLastLines)
{
  host::SecurityLogService service(file);
  EXPECT_EQ(service.lastLines(5), Texts());
  for (const char* record : {"a", "b", "c"})
    log(service, record);
  EXPECT_EQ(service.lastLines(0), Texts());
  EXPECT_EQ(service.lastLines(2), (Texts{lineOf("b"), lineOf("c")}));
  EXPECT_EQ(service.lastLines(99), (Texts{lineOf("a"), lineOf("b"), lineOf("c")}));
}

TEST_F(SecurityLog, TellsLastLinesOfALongFile)
{
  std::string content;
  for (int i = 0; i < 20000; ++i)
    content += "line " + std::to_string(i) + "\n";
  hosttest::writeFile(file, content + std::string(50000, 'x') + "\nlast\n");
  host::SecurityLogService service(file);
  EXPECT_EQ(service.lastLines(1), Texts{"last"});
  EXPECT_EQ(service.lastLines(3), (Texts{"line 19999", std::string(50000, 'x'), "last"}));
  EXPECT_EQ(service.lastLines(20001).front(), "line 1");
  EXPECT_EQ(service.lastLines(30000).size(), 20002U);
}

TEST_F(SecurityLog, ThreadsDoNotMixTheirLines)
{
  host::SecurityLogService service(file);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back(
        [&]
        {
          for (int i = 0; i < 25; ++i)
            log(service, std::string(3000, 'x'));
        });
  for (std::thread& thread : threads)
    thread.join();
  const Texts lines = linesOf(file);
  ASSERT_EQ(lines.size(), 100U);
  for (const std::string& line : lines)
    EXPECT_EQ(line, lineOf(std::string(3000, 'x')));
}

namespace
{
/// A log that is full but for a few bytes, of `records` records in all.
void fill(const std::filesystem::path& file, int records = 5)
{
  std::ofstream log(file, std::ios::binary | std::ios::app);
  for (int i = 0; i < records; ++i)
    log << "2020-01-01T00:00:0" << i << "Z\t" << std::string(5UL * 1024 * 1024 / 5 - 30, 'x') << "\n";
}

Texts namesIn(const std::filesystem::path& folder)
{
  Texts names;
  for (const auto& each : std::filesystem::directory_iterator(folder))
    names.push_back(each.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

/// What a log says at its begin, without the time.
std::string beginOf(const std::filesystem::path& file)
{
  const std::string line = linesOf(file).front();
  return line.substr(std::min<std::size_t>(20, line.size()));
}

std::string continued(const std::string& dropped)
{
  return "\t0\t0\t0\t0\tok\tcontinued from security.log.1, dropped so far: " + dropped + "\t-\t-\t\\continued";
}
} // namespace

TEST_F(SecurityLog, GoesOnInANewFileWhenItIsFull)
{
  fill(file);
  const auto size = static_cast<std::size_t>(std::filesystem::file_size(file));
  host::SecurityLogService service(file);
  log(service, std::string(5UL * 1024 * 1024 - size - lineOf("").size() - 1, 'y'));
  EXPECT_EQ(namesIn(folder.path()), Texts{"security.log"}) << "just full";
  EXPECT_EQ(std::filesystem::file_size(file), 5UL * 1024 * 1024);
  log(service, "next");
  log(service, "after");
  EXPECT_EQ(namesIn(folder.path()), (Texts{"security.log", "security.log.1"}));
  EXPECT_EQ(beginOf(file), continued("0 records"));
  EXPECT_EQ(linesOf(file).size(), 3U);
  EXPECT_EQ(linesOf(file).back(), lineOf("after"));
  EXPECT_EQ(std::filesystem::file_size(file.string() + ".1"), 5UL * 1024 * 1024);
}

TEST_F(SecurityLog, KeepsFourOlderFilesAndTellsHowManyRecordsItDropped)
{
  host::SecurityLogService service(file);
  const Texts told = {"0 records",
                      "0 records",
                      "0 records",
                      "0 records",
                      "5 records, the last of 2020-01-01T00:00:04Z",
                      "11 records, the last of 2020-01-01T00:00:04Z",
                      "17 records, the last of 2020-01-01T00:00:04Z"};
  for (const std::string& dropped : told)
  {
    fill(file);
    log(service, "next");
    EXPECT_EQ(beginOf(file), continued(dropped));
    EXPECT_EQ(linesOf(file).back(), lineOf("next"));
  }
  EXPECT_EQ(namesIn(folder.path()),
            (Texts{"security.log", "security.log.1", "security.log.2", "security.log.3", "security.log.4"}));
}

TEST_F(SecurityLog, TellsLastLinesOfOlderFilesAsWell)
{
  host::SecurityLogService service(file);
  for (const char* record : {"a", "b", "c"})
  {
    log(service, record);
    fill(file, 5);
  }
  log(service, "d");
  const Texts lines = service.lastLines(100);
  EXPECT_EQ(lines.size(), 4U + 3U * 5U + 3U) << "records and first lines";
  EXPECT_EQ(lines.front(), lineOf("a"));
  EXPECT_EQ(lines.back(), lineOf("d"));
  EXPECT_EQ(service.lastLines(3).front().substr(0, 20), "2020-01-01T00:00:04Z");
}

TEST_F(SecurityLog, ThatIsFullEndsALineThatWasCutOffBeforeItGoesOn)
{
  host::SecurityLogService service(file);
  fill(file);
  std::ofstream(file, std::ios::app) << "cut o";
  log(service, "next");
  EXPECT_EQ(linesOf(file.string() + ".1").back(), "cut o\t\\unfinished");
  EXPECT_EQ(linesOf(file).size(), 2U);
  EXPECT_EQ(linesOf(file).back(), lineOf("next"));
}

TEST_F(SecurityLog, FinishesWhatAPowerCutLeftOfARotation)
{
  // Which files there are, and which there are then; each holds its name.
  const std::vector<std::pair<Texts, Texts>> table = {
      {{"", ".1", ".2", ".3", ".4", ".new"}, {"", ".1", ".2", ".3", ".4"}},
      {{"", ".1", ".2", ".4", ".new"}, {".new", "", ".1", ".2", ".4"}},
      {{"", ".2", ".3", ".4", ".new"}, {".new", "", ".2", ".3", ".4"}},
      {{".1", ".2", ".3", ".4", ".new"}, {".new", ".1", ".2", ".3", ".4"}},
      {{"", ".1", ".new"}, {".new", "", ".1"}},
      {{".1", ".new"}, {".new", ".1"}},
  };
  for (const auto& [before, after] : table)
  {
    hosttest::TemporaryFolder place;
    const std::string log = place / "security.log";
    for (const std::string& end : before)
      hosttest::writeFile(log + end, end + "\n");
    const host::SecurityLogService service(log);
    Texts found = {linesOf(log).front()};
    for (int number = 1; number <= 4; ++number)
      if (const std::string older = log + "." + std::to_string(number); std::filesystem::exists(older))
        found.push_back(linesOf(older).front());
    EXPECT_EQ(found, after);
    EXPECT_FALSE(std::filesystem::exists(log + ".new"));
  }
}

TEST_F(SecurityLog, ThatCannotGoOnInANewFileGoesOnInItsOwn)
{
  std::filesystem::create_directory(file.string() + ".new");
  host::SecurityLogService service(file);
  fill(file);
  log(service, "next");
  log(service, "after");
  EXPECT_EQ(linesOf(file).size(), 7U);
  EXPECT_EQ(linesOf(file).back(), lineOf("after"));
  std::filesystem::remove(file.string() + ".new");
  hosttest::writeFile(folder / "target", "of somebody");
  std::filesystem::create_symlink(folder / "target", file.string() + ".new");
  fill(file, 2);
  log(service, "linked");
  EXPECT_EQ(hosttest::contentOf(folder / "target"), "of somebody");
  std::filesystem::remove(file.string() + ".new");
  fill(file, 2);
  log(service, "later");
  EXPECT_EQ(beginOf(file), continued("0 records"));
}

TEST_F(SecurityLog, RecordCannotPassForTheBeginOfALog)
{
  host::SecurityLogService service(file);
  service.logSecurityEvent(someTime, 0, 0, 0, 0, false, "continued, dropped so far: 9", "-", "\\continued");
  fill(file);
  log(service, "next");
  EXPECT_EQ(beginOf(file), continued("0 records"));
}

TEST_F(SecurityLog, WritesWholeRecordsHoweverLittleTheSystemTakesAtATime)
{
  host::SecurityLogService service(file);
  const hosttest::StingyWrites writes;
  log(service, "first");
  log(service, "second");
  EXPECT_EQ(linesOf(file), (Texts{lineOf("first"), lineOf("second")}));
}

TEST_F(SecurityLog, ThreadsDoNotMixTheirLinesHoweverLittleTheSystemTakesAtATime)
{
  host::SecurityLogService service(file);
  const hosttest::StingyWrites writes;
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back(
        [&]
        {
          for (int i = 0; i < 10; ++i)
            log(service, std::string(100, 'x'));
        });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(linesOf(file), Texts(40, lineOf(std::string(100, 'x'))));
}

TEST_F(SecurityLog, WritesItsTimesInUtcWhereverTheDeviceIs)
{
  const char* before = std::getenv("TZ");
  const std::string zone = before != nullptr ? before : "";
  ::setenv("TZ", "XYZ-9", 1);
  ::tzset();
  host::SecurityLogService service(file);
  log(service, "r");
  before != nullptr ? ::setenv("TZ", zone.c_str(), 1) : ::unsetenv("TZ");
  ::tzset();
  EXPECT_EQ(linesOf(file), Texts{lineOf("r")});
}

TEST_F(SecurityLog, RecordWaitsForTheOneThatIsBeingWritten)
{
  host::SecurityLogService service(file);
  hosttest::Meanwhile other;
  hosttest::StingyWrites writes;
  writes.behindTheNextByte([&] { other.runs([&] { log(service, "second"); }); });
  log(service, "first");
  other.join();
  EXPECT_EQ(linesOf(file), (Texts{lineOf("first"), lineOf("second")}));
}

TEST_F(SecurityLog, LastLinesWaitForTheOneThatIsBeingWritten)
{
  host::SecurityLogService service(file);
  Texts lines;
  hosttest::Meanwhile other;
  hosttest::StingyWrites writes;
  writes.behindTheNextByte([&] { other.runs([&] { lines = service.lastLines(5); }); });
  log(service, "first");
  other.join();
  EXPECT_EQ(lines, Texts{lineOf("first")});
}
