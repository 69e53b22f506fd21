// A callback that takes a second: others wait that long, and no longer, and nothing is lost.
#include <chrono>
#include <future>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Stage.h"

namespace
{

using Clock = std::chrono::steady_clock;
using misbehaviour::Stage;

constexpr std::chrono::milliseconds pause(1000);
const char* const refusals =
    "false a=A,b=B,c=C,d=D,e=E,f=F,nobody=NOBODY; |/|bad group; c|c|refused; f|f|no setter available; "
    "nobody|nobody|unknown item";

/// A set request whose first setter sleeps; `meanwhile` runs on another thread as soon as it does.
std::chrono::milliseconds runBesideASleepingSetter(Stage& stage, const std::function<void()>& meanwhile)
{
  std::promise<void> asleep;
  misbehaviour::inCall("setValue", 1,
                       [&]
                       {
                         asleep.set_value();
                         std::this_thread::sleep_for(pause);
                       });
  std::string result;
  std::thread setting([&] { result = misbehaviour::operation("setData").run(stage); });
  asleep.get_future().wait();
  const auto begun = Clock::now();
  meanwhile();
  const auto waited = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begun);
  setting.join();
  recording::behaviour().everyCall = nullptr;
  EXPECT_EQ(result, refusals);
  return waited;
}

TEST(SlowTest, AnotherThreadsReadWaitsForTheSetterAndIsAnswered)
{
  Stage stage(true);
  std::string answer;
  const auto waited = runBesideASleepingSetter(stage, [&] { answer = misbehaviour::operation("getData").run(stage); });
  EXPECT_GE(waited, pause / 2);
  EXPECT_EQ(answer, "true a=live a,c=rc,f=rf,nobody=NOBODY");
  EXPECT_EQ(stage.afterwards(false), misbehaviour::undisturbed(false));
}

TEST(SlowTest, TheStartUpFlagDoesNotWait)
{
  Stage stage(true);
  const auto waited = runBesideASleepingSetter(stage, [&] { stage.manager->setStartup(false); });
  EXPECT_LT(waited, pause / 2);
}

TEST(SlowTest, EightThreadsWaitAndAreAllServed)
{
  Stage stage(true);
  const auto readAll = [&]
  {
    std::vector<std::future<std::string>> reads;
    for (int thread = 0; thread < 8; ++thread)
      reads.push_back(std::async(std::launch::async, [&] { return misbehaviour::operation("getData").run(stage); }));
    for (auto& read : reads)
      EXPECT_EQ(read.get(), "true a=live a,c=rc,f=rf,nobody=NOBODY");
  };
  EXPECT_GE(runBesideASleepingSetter(stage, readAll), pause / 2);
  EXPECT_EQ(stage.afterwards(false), misbehaviour::undisturbed(false));
}

} // namespace
