// The local management store as the manager uses it.
#include <ManageableData.h>
#include <MgmtAgentIfc.h>

#include <gtest/gtest.h>

#include <list>
#include <string>
#include <vector>

#include "ServicesUnderTest.h"

namespace
{
/// Notes what is reported to it.
class NotingAgent : public MgmtAgentIfc
{
public:
  void observedDataChanged(ManageableData& data) override
  {
    std::vector<std::string> rootIds;
    data.getRootIds(rootIds);
    for (const std::string& rootId : rootIds)
    {
      std::string value;
      data.interogate(rootId, rootId, value);
      reports.push_back(rootId + "=" + value);
    }
  }

  std::vector<std::string> reports;
};

class LocalMgmtContract : public testing::Test
{
protected:
  bool publish(const std::string& rootId, const std::string& value)
  {
    ManageableData data;
    data.populate(rootId, rootId, value);
    return services->store().publishData(data);
  }

  NotingAgent agent;
  std::unique_ptr<contract::Services> services = contract::makeServices();
};
} // namespace

TEST_F(LocalMgmtContract, AcceptsRegistrationsHoweverBareAndOften)
{
  EXPECT_TRUE(services->store().registerService("service", &agent, 1));
  EXPECT_TRUE(services->store().registerService("service", &agent, 1));
  EXPECT_TRUE(services->store().registerService("", nullptr, 1));
}

TEST_F(LocalMgmtContract, FillsAnEmptyRecordWithNothing)
{
  ManageableData data;
  EXPECT_TRUE(services->store().lookupData(data));
  std::vector<std::string> rootIds;
  data.getRootIds(rootIds);
  EXPECT_TRUE(rootIds.empty());
}

TEST_F(LocalMgmtContract, LooksUpWhatWasPublished)
{
  ASSERT_TRUE(publish("item", "value"));
  ManageableData data;
  data.addRootId("item", nullptr);
  data.addRootId("unheard of", nullptr);
  ASSERT_TRUE(services->store().lookupData(data));
  std::string value;
  EXPECT_TRUE(data.interogate("item", "item", value));
  EXPECT_EQ(value, "value");
  EXPECT_FALSE(data.interogate("unheard of", "unheard of", value));
}

TEST_F(LocalMgmtContract, OwnRootIdNamesADictionary)
{
  services->defineDictionary("map", "phone.name");
  ManageableData data;
  data.setRootId("map", nullptr);
  ASSERT_TRUE(services->store().lookupData(data));
  std::string value;
  EXPECT_TRUE(data.interogate("map", "/item[1]/rootId", value));
  EXPECT_EQ(value, "phone.name");
}

TEST_F(LocalMgmtContract, LookupOfAMissingDictionaryFails)
{
  ManageableData data;
  data.setRootId("nowhere", nullptr);
  EXPECT_FALSE(services->store().lookupData(data));
}

TEST_F(LocalMgmtContract, ReportsChangesOfSubscribedRootIdsOnly)
{
  std::list<std::string> rootIds = {"observed"};
  ASSERT_TRUE(services->store().subscribe(rootIds, &agent));
  services->change("other", "1");
  services->change("observed", "2");
  EXPECT_EQ(agent.reports, std::vector<std::string>{"observed=2"});
}

TEST_F(LocalMgmtContract, RepeatedSubscriptionDoesNotDoubleReports)
{
  for (int i = 0; i < 2; ++i)
  {
    std::list<std::string> rootIds = {"observed", "observed"};
    services->store().subscribe(rootIds, &agent);
  }
  services->change("observed", "1");
  EXPECT_EQ(agent.reports, std::vector<std::string>{"observed=1"});
}

TEST_F(LocalMgmtContract, AcceptsSubscriptionsWithoutListenerOrRootIds)
{
  std::list<std::string> none;
  EXPECT_TRUE(services->store().subscribe(none, &agent));
  std::list<std::string> rootIds = {"observed"};
  EXPECT_TRUE(services->store().subscribe(rootIds, nullptr));
  services->change("observed", "1");
  EXPECT_TRUE(agent.reports.empty());
}

TEST_F(LocalMgmtContract, CheckWithoutObjectionLeavesTheOwnRootIdEmpty)
{
  ManageableData data;
  services->store().checkData(data, nullptr);
  EXPECT_EQ(data.getRootId(), "");
  data.addRootId("item", nullptr);
  services->store().checkData(data, nullptr);
  EXPECT_EQ(data.getRootId(), "");
}

TEST_F(LocalMgmtContract, CheckNamesTheItemThatMustNotChange)
{
  services->lockItem("locked");
  ManageableData data;
  data.addRootId("free", nullptr);
  data.addRootId("locked", nullptr);
  services->store().checkData(data, nullptr);
  EXPECT_EQ(data.getRootId(), "locked");
}
