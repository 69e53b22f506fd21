// What is remembered of the traffic with the Data Access Service.
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <thread>

#include "HostTesting.h"
#include "host/Traffic.h"

namespace
{
/// Answers as told.
class Answering : public ::DataAccessServiceIfc
{
public:
  std::string sendRequest(const char* request, size_t length) override
  {
    return answer(std::string(request, length));
  }
  std::function<std::string(const std::string&)> answer = [](const std::string& request) { return "re " + request; };
};
} // namespace

TEST(Traffic, PassesRequestAndReplyOn)
{
  Answering real;
  host::TrafficRecorder recorder(real, 10);
  EXPECT_EQ(recorder.sendRequest("abc and more", 3), "re abc");
}

TEST(Traffic, RemembersTheLastExchangesOldestFirst)
{
  Answering real;
  host::TrafficRecorder recorder(real, 2);
  for (const char* request : {"a", "b", "c"})
    hosttest::send(recorder, request);
  const std::vector<host::Exchange> kept = recorder.exchanges();
  ASSERT_EQ(kept.size(), 2U);
  EXPECT_EQ(kept[0].request, "b");
  EXPECT_EQ(kept[0].reply, "re b");
  EXPECT_EQ(kept[0].number, 2U);
  EXPECT_EQ(kept[1].request, "c");
  EXPECT_EQ(kept[1].number, 3U);
}

TEST(Traffic, RemembersFewerExchangesWhenTheyAreLargeButAlwaysTheLast)
{
  Answering real;
  real.answer = [](const std::string& request) { return std::string(request.size(), 'r'); };
  host::TrafficRecorder recorder(real, 100);
  for (int i = 0; i < 20; ++i)
    hosttest::send(recorder, std::string(512 * 1024, 'x'));
  ASSERT_EQ(recorder.exchanges().size(), 4U) << "a MiB each, with request and reply";
  EXPECT_EQ(recorder.exchanges().front().number, 17U);
  hosttest::send(recorder, std::string(8UL * 1024 * 1024, 'x'));
  ASSERT_EQ(recorder.exchanges().size(), 1U);
  EXPECT_EQ(recorder.exchanges().front().number, 21U);
  for (int i = 0; i < 120; ++i)
    hosttest::send(recorder, "small");
  EXPECT_EQ(recorder.exchanges().size(), 100U);
}

TEST(Traffic, RemembersNothingWhenToldSo)
{
  Answering real;
  host::TrafficRecorder recorder(real, 0);
  EXPECT_EQ(hosttest::send(recorder, "a"), "re a");
  EXPECT_TRUE(recorder.exchanges().empty());
}

TEST(Traffic, MeasuresTheTimeOfTheRealService)
{
  Answering real;
  real.answer = [](const std::string&)
  {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return std::string();
  };
  host::TrafficRecorder recorder(real, 1);
  hosttest::send(recorder, "a");
  EXPECT_GE(recorder.exchanges().at(0).duration, std::chrono::milliseconds(5));
}

TEST(Traffic, FailurePassesOnAndIsRemembered)
{
  Answering real;
  host::TrafficRecorder recorder(real, 10);
  real.answer = [](const std::string&) -> std::string { throw std::runtime_error("is down"); };
  EXPECT_THROW(hosttest::send(recorder, "a"), std::runtime_error);
  real.answer = [](const std::string&) -> std::string { throw 7; };
  EXPECT_THROW(hosttest::send(recorder, "b"), int);
  const std::vector<host::Exchange> kept = recorder.exchanges();
  ASSERT_EQ(kept.size(), 2U);
  EXPECT_EQ(kept[0].failure, "is down");
  EXPECT_EQ(kept[0].reply, "");
  EXPECT_EQ(kept[1].failure, "unknown failure");
}

TEST(Traffic, HoldsNoLockWhileTheServiceWorks)
{
  Answering real;
  host::TrafficRecorder recorder(real, 10);
  real.answer = [&](const std::string& request)
  {
    if (request == "outer")
      std::thread([&] { hosttest::send(recorder, "inner"); }).join();
    return std::to_string(recorder.exchanges().size());
  };
  EXPECT_EQ(hosttest::send(recorder, "outer"), "1");
  EXPECT_EQ(recorder.exchanges().size(), 2U);
}

TEST(Traffic, ListenerHearsOfEveryExchangeHoweverFewAreRemembered)
{
  struct : host::TrafficListener
  {
    void requestBegins(const std::string& request) override
    {
      heard += request + " ";
    }
    void exchangeEnded(const host::Exchange& exchange) override
    {
      heard += std::to_string(exchange.number) + exchange.reply + exchange.failure + ", ";
    }
    std::string heard;
  } listener;
  Answering real;
  host::TrafficRecorder recorder(real, 1);
  recorder.listen(&listener);
  hosttest::send(recorder, "a");
  hosttest::send(recorder, "b");
  real.answer = [](const std::string&) -> std::string { throw std::runtime_error("down"); };
  EXPECT_THROW(hosttest::send(recorder, "c"), std::runtime_error);
  recorder.listen(nullptr);
  EXPECT_THROW(hosttest::send(recorder, "d"), std::runtime_error);
  EXPECT_EQ(listener.heard, "a 1re a, b 2re b, c 3down, ");
}
