// The service on a device of its own, through its manager.
#include "CommsService.h"

#include <ManageableData.h>
#include <RejectReasonsStrings.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <thread>

#include "host/Device.h"
#include "host/RejectReasons.h"

using namespace commsservice;

namespace
{

/// A device in a folder of its own, with the tables that the tests write to.
class CommsServiceTest : public testing::Test
{
protected:
  CommsServiceTest()
  {
    std::string pattern = (std::filesystem::temp_directory_path() / "commsserviceXXXXXX").string();
    folder = ::mkdtemp(pattern.data());
    std::filesystem::current_path(folder);
    std::filesystem::copy_file(SAMPLE_MAP, folder / "CommsSettings.csv");
    powerUp(1);
  }
  ~CommsServiceTest() override
  {
    powerDown();
    std::filesystem::current_path("/");
    std::filesystem::remove_all(folder);
  }

  void powerUp(std::uint32_t interfaces)
  {
    host::DeviceSettings settings;
    settings.folder = folder;
    settings.interfaceCount = interfaces;
    settings.consoleLevel = 0;
    device = std::make_unique<host::Device>(settings);
    device->das().provision({{"NetworkSettings", "", {"IpAddress", "IpNetmask", "IpGateway", "HostName"}, {}},
                             {"TransportSettings", "", {"KeepAliveSeconds", "RtpFirstPort", "RtpLastPort"}, {}},
                             {"SipBaseSettings", "", {"UserName", "Password"}, {}},
                             {"UserPreferences",
                              "",
                              {"Language", "Brightness", "Contrast", "DimSeconds", "ClockStyle", "DateOrder", "Banner",
                               "RingTone", "RingVolume", "KeyClick"},
                              {}}});
    service = std::make_unique<CommsService>(device->context());
    EXPECT_TRUE(service->start("CommsItemMap"));
  }
  void powerDown()
  {
    device->store().forgetAgent(&service->agent());
    service.reset();
    device.reset();
  }

  bool set(const std::vector<std::pair<std::string, std::string>>& values)
  {
    ManageableData data;
    for (const auto& [rootId, value] : values)
      data.populate(rootId, rootId, value);
    const bool success = service->set(data);
    rejects = host::rejectReasons(data);
    return success;
  }
  std::string get(const std::string& rootId)
  {
    ManageableData data;
    data.addRootId(rootId, nullptr);
    service->get(data);
    std::string value;
    data.interogate(rootId, rootId, value);
    return value;
  }
  std::optional<std::string> stored(const std::string& schema, const std::string& column)
  {
    return device->das().storedCell(schema, column, "", "");
  }

  std::filesystem::path folder;
  std::unique_ptr<host::Device> device;
  std::unique_ptr<CommsService> service;
  std::vector<host::RejectReason> rejects;
};

} // namespace

TEST_F(CommsServiceTest, StartsWithoutRefusalOnAnEmptyDevice)
{
  const CallReport report = service->takeReport();
  EXPECT_TRUE(report.refusals.empty());
  EXPECT_TRUE(report.groupRefusals.empty());
  EXPECT_EQ(report.groupsJudged, 3U);
}

TEST_F(CommsServiceTest, TakesTheAlternativeDefaultsOfAUnitWithThreeInterfaces)
{
  powerDown();
  powerUp(3);
  EXPECT_EQ(get("ip.address"), "10.20.0.20");
  EXPECT_TRUE(service->takeReport().groupRefusals.empty());
}

TEST_F(CommsServiceTest, RefusesAnAddressAloneThatLeavesItsGateway)
{
  EXPECT_FALSE(set({{"ip.address", "10.1.1.5"}}));
  ASSERT_EQ(rejects.size(), 1U);
  EXPECT_EQ(rejects.front().rootId, "");
  EXPECT_EQ(rejects.front().name, "/");
  EXPECT_EQ(rejects.front().reason,
            "IpAddressing: the gateway 192.168.1.1 is not in the network 10.1.1.0/24 of the address");
  EXPECT_EQ(get("ip.address"), "192.168.1.20");
  EXPECT_EQ(stored("NetworkSettings", "IpAddress"), std::nullopt);
}

TEST_F(CommsServiceTest, KeepsAnAcceptedGroupOverARestartOfTheDevice)
{
  EXPECT_TRUE(set({{"ip.address", "10.1.1.5"}, {"ip.netmask", "255.255.0.0"}, {"ip.gateway", "10.1.0.1"}}));
  powerDown();
  powerUp(1);
  EXPECT_EQ(get("ip.address"), "10.1.1.5");
  EXPECT_EQ(get("ip.gateway"), "10.1.0.1");
}

TEST_F(CommsServiceTest, DoesNotLetARefusedRequestIntoTheNextOne)
{
  EXPECT_FALSE(set({{"ip.address", "192.168.1.77"}, {"ip.netmask", "nonsense"}}));
  EXPECT_TRUE(set({{"ip.gateway", "192.168.1.2"}}));
  EXPECT_EQ(get("ip.address"), "192.168.1.20");
  EXPECT_EQ(stored("NetworkSettings", "IpAddress"), std::nullopt);
  EXPECT_EQ(stored("NetworkSettings", "IpGateway"), "192.168.1.2");
}

TEST_F(CommsServiceTest, TakesNothingOfAGroupWhoseOtherMemberWasRefused)
{
  EXPECT_FALSE(set({{"ip.netmask", "nonsense"}, {"ip.address", "192.168.1.77"}}));
  EXPECT_EQ(get("ip.address"), "192.168.1.20");
  ASSERT_EQ(rejects.size(), 2U);
}

TEST_F(CommsServiceTest, StoresThePasswordEncryptedAndReadsItBack)
{
  EXPECT_TRUE(set({{"sip.userName", "anna"}, {"sip.password", "open sesame"}}));
  ASSERT_TRUE(stored("SipBaseSettings", "Password"));
  EXPECT_EQ(stored("SipBaseSettings", "Password")->find("sesame"), std::string::npos);
  EXPECT_EQ(get("sip.password"), "open sesame");
  powerDown();
  powerUp(1);
  EXPECT_EQ(service->liveValue("SipPassword"), "open sesame");
}

TEST_F(CommsServiceTest, DoesNotPublishThePassword)
{
  EXPECT_TRUE(set({{"sip.userName", "anna"}, {"sip.password", "open sesame"}}));
  service->restart("CommsItemMap");
  EXPECT_EQ(device->store().value("sip.userName"), "anna");
  EXPECT_EQ(device->store().value("sip.password"), std::nullopt);
}

TEST_F(CommsServiceTest, KeepsDefaultsWhenTheDatabaseHoldsAGroupThatDoesNotAgree)
{
  EXPECT_TRUE(set({{"transport.rtpFirstPort", "2000"}, {"transport.rtpLastPort", "3000"}}));
  const std::string update =
      "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"TransportSettings\">"
      "<ReasonForMessage>update_request</ReasonForMessage><RtpLastPort>1500</RtpLastPort></Schema>";
  device->das().sendRequest(update.c_str(), update.size());
  powerDown();
  powerUp(1);
  EXPECT_EQ(get("transport.rtpFirstPort"), "16384");
  EXPECT_EQ(service->takeReport().groupRefusals.size(), 1U);
}

TEST_F(CommsServiceTest, ReadsNumberedLocalItemsAndHearsOfTheirChanges)
{
  device->store().change("key.function-3", "line");
  EXPECT_EQ(service->liveValue("KeyFunction", "3"), "line");
  EXPECT_EQ(service->liveValue("KeyFunction", "1"), "none");
  powerDown();
  powerUp(1);
  EXPECT_EQ(service->liveValue("KeyFunction", "3"), "line");
}

TEST_F(CommsServiceTest, ResetsUserDataUnlessLocked)
{
  EXPECT_TRUE(set({{"display.brightness", "20"}}));
  device->store().lockItem("display.brightness");
  EXPECT_FALSE(service->resetUserData());
  EXPECT_EQ(get("display.brightness"), "20");
  device->store().unlockItem("display.brightness");
  EXPECT_TRUE(service->resetUserData());
  EXPECT_EQ(get("display.brightness"), "80");
  EXPECT_EQ(stored("UserPreferences", "Brightness"), "80");
}

TEST_F(CommsServiceTest, ReloadLeavesUserDataAloneThatWasNeverStored)
{
  service->reloadUserData();
  EXPECT_EQ(get("display.banner"), "Ready");
  EXPECT_EQ(get("display.brightness"), "80");
}

TEST_F(CommsServiceTest, CountsAnUnchangedRequestAsSuccess)
{
  EXPECT_TRUE(set({{"transport.keepAliveSeconds", "30"}}));
  ASSERT_EQ(rejects.size(), 1U);
  EXPECT_EQ(rejects.front().reason, RejectReasonsStrings::unchanged_data);
}

TEST_F(CommsServiceTest, KeepsRequestsOfTwoThreadsApart)
{
  const auto move = [this](const std::string& first, const std::string& last)
  {
    for (int i = 0; i < 50; ++i)
    {
      ManageableData data;
      data.populate("transport.rtpFirstPort", "transport.rtpFirstPort", first);
      data.populate("transport.rtpLastPort", "transport.rtpLastPort", last);
      EXPECT_TRUE(service->set(data));
    }
  };
  std::thread low(move, "2000", "3000");
  std::thread high(move, "40000", "50000");
  low.join();
  high.join();
  EXPECT_EQ(get("transport.rtpLastPort"), get("transport.rtpFirstPort") == "2000" ? "3000" : "50000");
}
