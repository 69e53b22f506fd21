// Which services fail on demand: those that a device offers, and any other behind the same wrappers.
#include "host/FaultyServices.h"

#include <ManageableData.h>

#include <gtest/gtest.h>

#include <vector>

#include "HostTesting.h"
#include "host/Device.h"
#include "host/Faults.h"

namespace
{
using host::FaultKind;
using host::FaultPlace;
using hosttest::errorOf;

/// Services of another make, which note what they are asked.
struct Other : ::DataAccessServiceIfc, ::LocalMgmtIfc, ::SecurityLogServiceIfc
{
  std::string sendRequest(const char* request, std::size_t length) override
  {
    return asked.emplace_back(request, length);
  }
  bool registerService(const std::string&, MgmtAgentIfc*, int) override
  {
    return note("registered");
  }
  bool lookupData(ManageableData&) override
  {
    return note("looked up");
  }
  bool subscribe(std::list<std::string>&, MgmtAgentIfc*) override
  {
    return note("subscribed");
  }
  bool publishData(ManageableData&) override
  {
    return note("published");
  }
  bool checkData(ManageableData&, void*) override
  {
    return note("checked");
  }
  void logSecurityEvent(time_t, int, int, int, int, bool, std::string record, std::string, std::string) override
  {
    note(record);
  }
  bool note(const std::string& what)
  {
    asked.push_back(what);
    return true;
  }

  std::vector<std::string> asked;
};

class FaultyServices : public testing::Test
{
protected:
  ~FaultyServices() override
  {
    host::endFaults();
  }
  /// One call of each operation, as many as answer well.
  int callAll()
  {
    ManageableData data;
    data.addRootId("item", nullptr);
    std::list<std::string> rootIds;
    const auto logRecord = [this] { log.logSecurityEvent(0, 4, 1, 5, 3, false, "record", "", ""); };
    return (hosttest::send(das, "request") == "request" ? 1 : 0) + (store.registerService("s", nullptr, 1) ? 1 : 0) +
           (store.lookupData(data) ? 1 : 0) + (store.subscribe(rootIds, nullptr) ? 1 : 0) +
           (store.publishData(data) ? 1 : 0) + (store.checkData(data, nullptr) ? 1 : 0) +
           (errorOf(logRecord).empty() ? 1 : 0);
  }

  Other real;
  host::FaultyDataAccessService das{real};
  host::FaultyLocalMgmt store{real};
  host::FaultySecurityLogService log{real, "the log"};
};
} // namespace

TEST_F(FaultyServices, HandEveryCallOnToARealOneOfAnyMake)
{
  EXPECT_EQ(callAll(), 7);
  EXPECT_EQ(real.asked, (std::vector<std::string>{"request", "registered", "looked up", "subscribed", "published",
                                                  "checked", "record"}));
}

TEST_F(FaultyServices, KeepEveryCallThatIsToFailFromTheRealOne)
{
  host::setFault({FaultPlace::das, FaultKind::refused, std::nullopt});
  host::setFault({FaultPlace::store, FaultKind::refuses, std::nullopt});
  host::setFault({FaultPlace::disk, FaultKind::full, std::nullopt});
  EXPECT_EQ(callAll(), 0);
  EXPECT_TRUE(real.asked.empty());
  host::endFaults();
  EXPECT_EQ(callAll(), 7);
}

TEST_F(FaultyServices, AskTheRealStoreAboutARecordWithoutItems)
{
  host::setFault({FaultPlace::store, FaultKind::refuses, 1});
  ManageableData data;
  EXPECT_TRUE(store.checkData(data, nullptr));
  EXPECT_EQ(host::faults().size(), 1U) << "not met";
}

TEST_F(FaultyServices, AreWhatADeviceOffers)
{
  const hosttest::TemporaryFolder folder;
  host::Device device({folder / "device", 1, 0, 0});
  device.das().provision({{"Plain", "", {"A"}, {}}});
  host::setFault({FaultPlace::das, FaultKind::empty, std::nullopt});
  host::setFault({FaultPlace::store, FaultKind::refuses, std::nullopt});
  host::setFault({FaultPlace::disk, FaultKind::full, std::nullopt});
  SvcRTEContext& context = device.context();
  auto& offeredDas = dynamic_cast<::DataAccessServiceIfc&>(*context.findService("DataAccessServiceIfc"));
  auto& offeredStore = dynamic_cast<::LocalMgmtIfc&>(*context.findService("LocalMgmtIfc"));
  auto& offeredLog = dynamic_cast<::SecurityLogServiceIfc&>(*context.findService("SecurityLogServiceIfc"));
  EXPECT_EQ(hosttest::send(offeredDas, hosttest::readRequest("Plain")), "");
  EXPECT_FALSE(offeredStore.registerService("Service", nullptr, 1));
  EXPECT_EQ(errorOf([&] { offeredLog.logSecurityEvent(0, 4, 1, 5, 3, false, "r", "", ""); }),
            (folder / "device/security.log").string() + ": the disk is full, on demand");
  EXPECT_EQ(errorOf([&] { device.store().change("item", "new"); }),
            (folder / "device/ocms.db").string() + ": the disk is full, on demand");
  EXPECT_NE(hosttest::send(device.das(), hosttest::updateRequest("Plain", "<A>new</A>")),
            hosttest::updateReply("Plain"));
  host::setFault({FaultPlace::das, FaultKind::absent, std::nullopt});
  EXPECT_EQ(context.findService("DataAccessServiceIfc"), nullptr);
}
