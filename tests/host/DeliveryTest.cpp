// Reports of changes to management agents.
#include <ManageableData.h>
#include <MgmtAgentIfc.h>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "HostTesting.h"
#include "Meanwhile.h"
#include "SyncCounter.h"
#include "host/LocalMgmtStore.h"

namespace
{
using Texts = std::vector<std::string>;

/// Notes its reports as "a=1,b=2", then does what it was told.
class Agent : public MgmtAgentIfc
{
public:
  void observedDataChanged(ManageableData& data) override
  {
    Texts rootIds;
    data.getRootIds(rootIds);
    std::string report;
    for (const std::string& rootId : rootIds)
    {
      std::string value;
      data.interogate(rootId, rootId, value);
      report += (report.empty() ? "" : ",") + rootId + "=" + value;
    }
    {
      const std::lock_guard<std::mutex> lock(mutex);
      reports.push_back(report);
    }
    if (then)
      then();
  }

  std::mutex mutex;
  Texts reports;
  std::function<void()> then;
};

class Delivery : public testing::Test
{
protected:
  void subscribe(Agent& subscriber, std::list<std::string> rootIds)
  {
    ASSERT_TRUE(store.subscribe(rootIds, &subscriber));
  }
  void publish(const std::vector<std::pair<std::string, std::string>>& values)
  {
    ManageableData data;
    for (const auto& [rootId, value] : values)
      data.populate(rootId, rootId, value);
    ASSERT_TRUE(store.publishData(data));
  }

  hosttest::TemporaryFolder folder;
  host::LocalMgmtStore store{folder / "ocms.db"};
  Agent agent;
};
} // namespace

TEST_F(Delivery, ChangeIsStoredBeforeItIsReported)
{
  subscribe(agent, {"a"});
  std::optional<std::string> seen;
  agent.then = [&] { seen = store.value("a"); };
  store.change("a", "1");
  EXPECT_EQ(seen, "1");
}

TEST_F(Delivery, ChangeToTheSameValueIsReported)
{
  subscribe(agent, {"a"});
  store.change("a", "1");
  store.change("a", "1");
  EXPECT_EQ(agent.reports, (Texts{"a=1", "a=1"}));
}

TEST_F(Delivery, PublicationReportsNewValuesInOneReport)
{
  store.change("b", "same");
  subscribe(agent, {"a", "b", "c"});
  publish({{"a", "1"}, {"b", "same"}, {"c", ""}, {"d", "4"}});
  EXPECT_EQ(agent.reports, Texts{"a=1,c="});
}

TEST_F(Delivery, RefusedPublicationReportsNothing)
{
  subscribe(agent, {"a", "b"});
  ManageableData data;
  data.populate("a", "a", "1");
  data.addRootId("b", nullptr);
  store.publishData(data);
  store.change("c", "1");
  EXPECT_EQ(agent.reports, Texts());
}

TEST_F(Delivery, EveryAgentHearsOfItsOwnRootIds)
{
  Agent other;
  subscribe(agent, {"a", "b"});
  subscribe(other, {"b", "c"});
  publish({{"a", "1"}, {"b", "2"}, {"c", "3"}});
  EXPECT_EQ(agent.reports, Texts{"a=1,b=2"});
  EXPECT_EQ(other.reports, Texts{"b=2,c=3"});
}

TEST_F(Delivery, AgentThatThrowsHarmsNobody)
{
  Agent other;
  subscribe(agent, {"a"});
  subscribe(other, {"a"});
  for (Agent* thrower : {&agent, &other})
    thrower->then = [] { throw std::runtime_error("cannot cope"); };
  EXPECT_NO_THROW(store.change("a", "1"));
  agent.then = [] { throw 7; };
  EXPECT_NO_THROW(store.change("a", "2"));
  EXPECT_EQ(agent.reports, (Texts{"a=1", "a=2"}));
  EXPECT_EQ(other.reports, (Texts{"a=1", "a=2"}));
}

TEST_F(Delivery, AgentMayUseTheStoreFromAnotherThread)
{
  // A lock held during the report would stop the other thread until the report is over.
  subscribe(agent, {"a"});
  std::future<void> other;
  agent.then = [&]
  {
    other = std::async(std::launch::async,
                       [&]
                       {
                         store.lockItem("x");
                         subscribe(agent, {"b"});
                         store.change("c", "1");
                       });
    EXPECT_EQ(other.wait_for(std::chrono::seconds(20)), std::future_status::ready);
  };
  store.change("a", "1");
  EXPECT_EQ(store.lockedItems(), Texts{"x"});
  EXPECT_EQ(store.value("c"), "1");
}

TEST_F(Delivery, ChangeMadeByTheAgentIsReportedAfterTheCurrentOne)
{
  subscribe(agent, {"a", "b"});
  std::size_t reportsDuring = 0;
  agent.then = [&]
  {
    agent.then = nullptr;
    store.change("b", "2");
    reportsDuring = agent.reports.size();
  };
  store.change("a", "1");
  EXPECT_EQ(reportsDuring, 1U);
  EXPECT_EQ(agent.reports, (Texts{"a=1", "b=2"}));
}

TEST_F(Delivery, LastReportHoldsTheValueThatWasStoredLast)
{
  subscribe(agent, {"a"});
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back(
        [this, t]
        {
          for (int i = 0; i < 50; ++i)
            store.change("a", std::to_string(t) + "." + std::to_string(i));
        });
  for (std::thread& thread : threads)
    thread.join();
  ASSERT_EQ(agent.reports.size(), 200U);
  EXPECT_EQ(agent.reports.back(), "a=" + store.value("a").value_or("none"));
}

TEST_F(Delivery, ForgottenAgentHearsNothingMore)
{
  Agent other;
  subscribe(agent, {"a"});
  subscribe(other, {"a"});
  store.forgetAgent(&agent);
  store.forgetAgent(nullptr);
  store.change("a", "1");
  EXPECT_EQ(agent.reports, Texts());
  EXPECT_EQ(other.reports, Texts{"a=1"});
}

TEST_F(Delivery, ReportsThatWaitAreForgottenToo)
{
  subscribe(agent, {"a", "b"});
  agent.then = [&]
  {
    store.change("b", "2");
    store.forgetAgent(&agent);
  };
  store.change("a", "1");
  EXPECT_EQ(agent.reports, Texts{"a=1"});
}

TEST_F(Delivery, ForgettingWaitsForAReportThatIsUnderWay)
{
  subscribe(agent, {"a"});
  std::promise<void> inside;
  std::promise<void> goOn;
  std::atomic<bool> over{false};
  agent.then = [&]
  {
    inside.set_value();
    goOn.get_future().wait();
    over = true;
  };
  std::thread changer([&] { store.change("a", "1"); });
  inside.get_future().wait();
  std::thread forgetter(
      [&]
      {
        store.forgetAgent(&agent);
        EXPECT_TRUE(over);
      });
  std::this_thread::sleep_for(std::chrono::milliseconds(20)); // a hasty forgetter would be through by now
  goOn.set_value();
  forgetter.join();
  changer.join();
}

TEST_F(Delivery, PublicationThatCannotReachTheDiskIsNotReportedLaterEither)
{
  subscribe(agent, {"a", "b"});
  {
    const hosttest::FailingSync broken;
    ManageableData data;
    data.populate("a", "a", "lost");
    EXPECT_FALSE(store.publishData(data));
  }
  store.change("b", "1");
  EXPECT_EQ(agent.reports, Texts{"b=1"});
}

TEST_F(Delivery, ChangeThatCannotReachTheDiskIsNotReportedLaterEither)
{
  subscribe(agent, {"a", "b"});
  {
    const hosttest::FailingSync broken;
    EXPECT_NE(hosttest::errorOf([&] { store.change("a", "lost"); }), "");
  }
  store.change("b", "1");
  EXPECT_EQ(agent.reports, Texts{"b=1"});
}

TEST_F(Delivery, ReportsComeInTheOrderOfTheChangesWheneverAnotherThreadChangesTheValueToo)
{
  subscribe(agent, {"a"});
  const std::vector<std::function<void()>> changes = {[&] { store.change("a", "first"); },
                                                      [&] {
                                                        publish({{"a", "first"}});
                                                      }};
  for (const auto& change : changes)
  {
    bool happened = true;
    for (int count = 0; happened; ++count)
    {
      store.change("a", "before");
      hosttest::Meanwhile other;
      const hosttest::BehindUnlocking moment(count, [&] { other.runs([&] { store.change("a", "meanwhile"); }); });
      change();
      happened = moment.happened();
      other.join();
      EXPECT_EQ(agent.reports.back(), "a=" + store.value("a").value_or("none")) << "behind unlocking " << count;
    }
  }
}
