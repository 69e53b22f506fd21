// Whole lives of a device: from its first start over changes, refusals and outages to the next power on.
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "Life.h"

namespace
{

using scenario::Life;
using scenario::PowerOn;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

std::string update(const std::string& schema, const std::string& cells)
{
  return R"(<Schema name=")" + schema + R"("><ReasonForMessage>update_request</ReasonForMessage>)" + cells +
         "</Schema>";
}

std::string read(const std::string& schema, const std::string& choice = "")
{
  return R"(<Schema name=")" + schema + R"("><ReasonForMessage>read_request</ReasonForMessage>)" + choice + "</Schema>";
}

TEST_F(Life, AFirstStartReadsEverySchemaAndHasTheDefaults)
{
  PowerOn run(folder);
  run.start();
  EXPECT_THAT(run.requests(), ElementsAre(read("Audio"), read("Lines"), read("Net"), read("SipBaseSettings")));
  EXPECT_EQ(run.get("phone.volume"), "5");
  EXPECT_EQ(run.get("phone.model"), "unknown");
  EXPECT_EQ(run.get("line.label-2"), "Line 2");
  EXPECT_EQ(run.get("net.address"), "192.0.2.10");
  EXPECT_EQ(run.get("screen.brightness"), "-");
}

TEST_F(Life, AFirstStartTellsItsStagesInOrder)
{
  PowerOn run(folder);
  run.start();
  std::vector<std::string> stages;
  for (const std::string& text : run.log())
  {
    for (const char* stage : {"5 setAllManagedData ", "5 importFromDAS", "5 subscribeForObservations", "2 ",
                              "5 Add group", "5 importFromOCMS getData", "5 publishChanges"})
    {
      if (text.compare(0, std::string(stage).size(), stage) == 0)
        stages.push_back(text);
    }
  }
  EXPECT_THAT(stages, ElementsAre("5 setAllManagedData CommsItemMap", "5 Add group \"ip\" and flag it for validation",
                                  "5 importFromDAS", "5 subscribeForObservations",
                                  "5 subscribeForObservations MgmtAgent: \"phone\" subscribing for: "
                                  "\"screen.brightness,\"",
                                  "5 importFromOCMS getData OK"));
}

TEST_F(Life, ASetIsThereAtTheNextPowerOn)
{
  {
    PowerOn run(folder);
    run.start();
    run.requests();
    EXPECT_EQ(run.set({{"phone.volume", "7"}, {"line.label-2", "Office <2> & \"more\""}, {"sip.password", "canary"}}),
              "done");
    const auto requests = run.requests();
    ASSERT_EQ(requests.size(), 3U);
    EXPECT_EQ(requests[0], update("Audio", "<Volume>7</Volume>"));
    EXPECT_EQ(requests[1], update("Lines", "<Entry><Number>2</Number><Label>Office &lt;2&gt; &amp; &quot;more&quot;"
                                           "</Label></Entry>"));
    EXPECT_THAT(requests[2], Not(HasSubstr("canary")));
  }
  PowerOn run(folder);
  run.start();
  EXPECT_EQ(run.get("phone.volume"), "7");
  EXPECT_EQ(run.get("line.label-1"), "Line 1");
  EXPECT_EQ(run.get("line.label-2"), "Office <2> & \"more\"");
  EXPECT_EQ(run.phone.live["password"], "canary");
}

TEST_F(Life, ARefusedItemChangesNothingAndTheOthersAreWritten)
{
  PowerOn run(folder);
  run.start();
  run.requests();
  EXPECT_EQ(run.set({{"phone.volume", "loud"}, {"line.label-1", "Desk"}, {"nobody", "1"}, {"phone.model", "x"}}),
            "failed phone.volume|phone.volume|must be a digit nobody|nobody|unknown item "
            "phone.model|phone.model|no setter available");
  EXPECT_THAT(run.requests(), ElementsAre(update("Lines", "<Entry><Number>1</Number><Label>Desk</Label></Entry>")));
  EXPECT_EQ(run.get("phone.volume"), "5");
}

TEST_F(Life, AnUnchangedValueIsReportedAndIsNoFailure)
{
  PowerOn run(folder);
  run.start();
  EXPECT_EQ(run.set({{"line.label-1", "Line 1"}}), "done line.label-1|line.label-1|UNCHANGED_DATA");
}

TEST_F(Life, AGroupIsWrittenAsAWholeOrNotAtAll)
{
  PowerOn run(folder);
  run.start();
  run.requests();
  EXPECT_EQ(run.set({{"net.address", "198.51.100.7"}, {"phone.volume", "3"}}),
            "failed |/|the gateway is in another network");
  EXPECT_THAT(run.requests(), ElementsAre(update("Audio", "<Volume>3</Volume>")));
  EXPECT_EQ(run.get("net.address"), "192.0.2.10");
  EXPECT_THAT(run.log(), Contains("2 setData failed because \"the gateway is in another network\" for group: \"ip\""));
  EXPECT_EQ(run.set({{"net.gateway", "198.51.100.1"}, {"net.address", "198.51.100.7"}}), "done");
  EXPECT_THAT(run.requests(), ElementsAre(update("Net", "<Address>198.51.100.7</Address>"
                                                        "<Gateway>198.51.100.1</Gateway>")));
  EXPECT_EQ(run.get("net.address"), "198.51.100.7");
}

TEST_F(Life, ASensitiveChangeLeavesOneMaskedSecurityRecord)
{
  PowerOn run(folder);
  run.start();
  run.set({{"sip.password", "canary"}});
  const auto lines = run.device.securityLog().lastLines(10);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_THAT(lines.front(), HasSubstr("SipBaseSettings set Password(***)"));
  EXPECT_THAT(lines.front(), Not(HasSubstr("canary")));
}

TEST_F(Life, ARestartPublishesWhatDiffersFromTheDefaults)
{
  PowerOn run(folder);
  run.start();
  run.set({{"phone.volume", "9"}});
  run.log();
  run.restart();
  EXPECT_EQ(run.device.store().value("phone.volume"), "9");
  EXPECT_EQ(run.get("phone.volume"), "9");
  const auto lines = run.log();
  EXPECT_THAT(lines, Contains(StartsWith("5 publishChanges ")));
  EXPECT_THAT(lines, Not(Contains(StartsWith("5 setAllManagedData"))));
}

TEST_F(Life, LocalValuesComeFromTheStoreAndFollowIt)
{
  {
    PowerOn run(folder);
    run.start();
    EXPECT_EQ(run.phone.live["brightness"], "");
    run.device.store().change("screen.brightness", "80");
    EXPECT_EQ(run.phone.live["brightness"], "80");
  }
  PowerOn run(folder);
  run.start();
  EXPECT_EQ(run.phone.live["brightness"], "80");
}

TEST_F(Life, AResetPutsUserDataBackEverywhere)
{
  PowerOn run(folder);
  run.start();
  run.set({{"phone.volume", "9"}, {"line.label-1", "Desk"}, {"line.label-2", "Door"}});
  run.requests();
  EXPECT_TRUE(run.manager->setDefaultUserData());
  EXPECT_THAT(run.requests(), ElementsAre(update("Audio", "<Volume>5</Volume>"),
                                          update("Lines", "<Entry><Number>1</Number><Label>Line 1</Label></Entry>")));
  EXPECT_EQ(run.get("phone.volume"), "5");
  EXPECT_EQ(run.get("line.label-1"), "Line 1");
  EXPECT_EQ(run.get("line.label-2"), "Door") << "no user data";
  EXPECT_EQ(run.device.store().value("phone.volume"), "5");
  EXPECT_FALSE(run.manager->setDefaultUserData()) << "nothing left to reset";
}

TEST_F(Life, ALockedItemKeepsTheResetAway)
{
  PowerOn run(folder);
  run.start();
  run.set({{"phone.volume", "9"}});
  run.device.store().lockItem("phone.volume");
  EXPECT_FALSE(run.manager->setDefaultUserData());
  EXPECT_EQ(run.get("phone.volume"), "9");
  run.device.store().unlockItem("phone.volume");
  EXPECT_TRUE(run.manager->setDefaultUserData());
}

TEST_F(Life, AReloadTakesWhatTheDatabaseHolds)
{
  PowerOn run(folder);
  run.start();
  run.set({{"phone.volume", "6"}});
  run.phone.live["volume"] = "1";
  run.requests();
  run.manager->reloadUserData();
  EXPECT_EQ(run.phone.live["volume"], "6");
  EXPECT_THAT(run.requests(), Contains(update("Audio", "<Volume>6</Volume>")));
}

TEST_F(Life, AnOutageOfTheDatabaseFailsWhatNeedsItAndNothingElse)
{
  PowerOn run(folder);
  run.start();
  run.set({{"phone.volume", "4"}});
  run.line.down = true;
  EXPECT_EQ(run.set({{"phone.volume", "8"}}), "failed");
  EXPECT_THAT(run.log(), Contains("2 sendDASRequests bad XML reply from DataAccessService \"\""));
  EXPECT_EQ(run.get("phone.model"), "unknown") << "the default stands in";
  EXPECT_EQ(run.get("phone.volume"), "8") << "the service itself has it";
  run.line.down = false;
  EXPECT_EQ(run.set({{"phone.volume", "8"}}), "done");
  EXPECT_EQ(run.device.das().storedCell("Audio", "Volume", "", ""), "8");
}

TEST_F(Life, AStartDuringAnOutageHasTheDefaultsAndRecoversLater)
{
  {
    PowerOn run(folder);
    run.start();
    run.set({{"phone.volume", "4"}});
  }
  PowerOn run(folder);
  run.line.down = true;
  run.start();
  EXPECT_EQ(run.get("phone.volume"), "5");
  EXPECT_THAT(run.log(), Contains("3 importFromDAS bad XML reply from DataAccessService \"\""));
  run.line.down = false;
  run.restart();
  EXPECT_EQ(run.get("phone.volume"), "4");
}

TEST_F(Life, AMapInTheLocalStoreStartsTheSameWay)
{
  std::filesystem::remove("CommsSettings.csv");
  PowerOn run(folder);
  run.device.store().defineDictionary("CommsItemMap", {{"/item[1]/rootId", "phone.volume"},
                                                       {"/item[1]/dasSchema", "Audio"},
                                                       {"/item[1]/dasItem", "Volume"},
                                                       {"/item[1]/default", "2"},
                                                       {"/item[1]/setter", "volume"},
                                                       {"/item[1]/getter", "volume"}});
  run.start();
  EXPECT_EQ(run.get("phone.volume"), "2");
  EXPECT_EQ(run.set({{"phone.volume", "3"}}), "done");
}

/// Sets the volume round and round, telling each one that was answered as done, until it is killed.
[[noreturn]] void setUntilKilled(const std::filesystem::path& folder, int answers)
{
  PowerOn run(folder);
  run.start();
  for (char digit = '0';; digit = digit == '9' ? '0' : static_cast<char>(digit + 1))
  {
    const std::string label(200, digit);
    if (run.set({{"phone.volume", std::string(1, digit)}, {"line.label-1", label}, {"line.label-2", label}}) ==
            "done" &&
        write(answers, &digit, 1) != 1)
      _exit(1);
  }
}

TEST_F(Life, WhatWasAnsweredAsDoneOutlivesAKill)
{
  for (int round = 0; round < 10; ++round)
  {
    int answers[2];
    ASSERT_EQ(pipe(answers), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0)
      setUntilKilled(folder, answers[1]);
    close(answers[1]);
    char last = '?';
    for (int seen = 0; seen < 3 + 2 * round; ++seen)
      ASSERT_EQ(::read(answers[0], &last, 1), 1);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    while (::read(answers[0], &last, 1) == 1)
      continue;
    close(answers[0]);

    PowerOn run(folder);
    run.start();
    const char next = last == '9' ? '0' : static_cast<char>(last + 1);
    EXPECT_THAT(run.get("phone.volume"), ::testing::AnyOf(std::string(1, last), std::string(1, next)));
    EXPECT_EQ(run.get("line.label-1"), run.get("line.label-2")) << "one request, all or nothing";
    EXPECT_THAT(run.get("line.label-1"), ::testing::AnyOf(std::string(200, last), std::string(200, next)));
  }
}

} // namespace
