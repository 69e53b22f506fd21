// What counts as another outcome of a transcript, and where.
#include <gtest/gtest.h>

#include "replay/Comparison.h"

namespace
{
using cli::transcript::Transcript;

Transcript transcriptOf(const std::vector<std::string>& lines)
{
  Transcript transcript;
  for (const std::string& line : lines)
    transcript.events.push_back({nlohmann::ordered_json::parse(line), transcript.events.size() + 2});
  return transcript;
}

const std::vector<std::string> recorded = {
    R"({"command":"set a 1"})",
    R"({"log":3,"module":"ServiceDataManager","text":"one"})",
    R"({"setter":"setA","accepted":true})",
    R"({"result":"set"})",
};

struct Case
{
  const char* what;
  std::vector<std::string> actual;
  std::size_t event;
  std::string expected;
  std::string seen;
};

std::vector<std::string> changed(std::size_t place, const std::string& line)
{
  std::vector<std::string> lines = recorded;
  lines[place] = line;
  return lines;
}

std::vector<std::string> withMore(std::size_t place, const std::string& line)
{
  std::vector<std::string> lines = recorded;
  lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(place), line);
  return lines;
}
} // namespace

TEST(Comparison, FindsTheFirstDifference)
{
  const std::string other = R"({"log":3,"module":"ServiceDataManager","text":"two"})";
  const std::string more = R"({"result":"more"})";
  const std::vector<Case> table = {
      {"the text of a log line", changed(1, other), 1, recorded[1], other},
      {"a log line more", withMore(1, other), 1, recorded[1], other},
      {"a log line less", {recorded[0], recorded[2], recorded[3]}, 1, recorded[1], recorded[2]},
      {"two in another order", {recorded[0], recorded[2], recorded[1], recorded[3]}, 1, recorded[1], recorded[2]},
      {"a longer run", withMore(4, more), 4, "", more},
      {"a longer run by a log line", withMore(4, other), 4, "", other},
      {"a shorter run", {recorded[0], recorded[1], recorded[2]}, 3, recorded[3], ""},
      {"nothing", {}, 0, recorded[0], ""},
  };
  for (const Case& each : table)
  {
    const auto found = cli::replay::compared(transcriptOf(recorded), transcriptOf(each.actual), "");
    ASSERT_TRUE(found) << each.what;
    EXPECT_EQ(found->event, each.event) << each.what;
    EXPECT_EQ(found->line, each.event + 2) << each.what;
    EXPECT_EQ(found->expected, each.expected) << each.what;
    EXPECT_EQ(found->actual, each.seen) << each.what;
    EXPECT_EQ(found->command, each.event == 0 ? "" : "set a 1") << each.what;
    EXPECT_EQ(found->before.size(), std::min<std::size_t>(each.event, 3)) << each.what;
  }
}

TEST(Comparison, PassesOverWhatThePlatformLogsOfItsOwnAndTheOrderOfNames)
{
  const std::string ours = R"({"log":2,"module":"HostPlatform","text":"slow"})";
  std::vector<std::string> actual = changed(2, R"({"accepted":true,"setter":"setA"})");
  actual.insert(actual.begin(), ours);
  actual.push_back(ours);
  actual.push_back(R"({"registered":{}})");
  EXPECT_FALSE(cli::replay::compared(transcriptOf(recorded), transcriptOf(actual), ""));
  EXPECT_FALSE(cli::replay::compared(transcriptOf(actual), transcriptOf(recorded), ""));
}

TEST(Comparison, RunThatEndedEarlyIsADifferenceEvenWhenAllCame)
{
  const auto found = cli::replay::compared(transcriptOf(recorded), transcriptOf(recorded), "ended by signal 6");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->expected, "");
  EXPECT_EQ(found->actual, "ended by signal 6");
  EXPECT_EQ(found->before, (std::vector<std::string>{recorded[1], recorded[2], recorded[3]}));
}
