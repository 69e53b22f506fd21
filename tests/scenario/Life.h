// A small phone on a host device whose folder outlives it: what the whole-life tests drive.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <MgmtAgentIfc.h>
#include <ServiceDataManagerIfc.h>
#include <ValidatorIfc.h>
#include <host/Device.h>
#include <host/RuntimeContext.h>

namespace scenario
{

/// The phone's live values, by setting and row, and the callbacks over them.
class Phone : public ValidatorIfc, public MgmtAgentIfc
{
public:
  void registerCallbacks(ServiceDataManagerIfc& manager);

  std::vector<std::pair<std::string, std::string>> getValidGroupItems(const std::string& group) override;
  void clearGroup(const std::string& group) override;
  /// Address and gateway have to be in one network of 256.
  bool validateGroup(std::string& reason, const std::string& group) override;
  void reloadGroup(const std::string& group) override;
  void observedDataChanged(ManageableData& data) override;

  /// By "setting" or "setting/row".
  std::map<std::string, std::string> live;
  /// Group items wait here until the group is judged.
  std::map<std::string, std::string> staged;
  ServiceDataManagerIfc* manager = nullptr;

private:
  class Setter;
  class Getter;
  std::vector<std::unique_ptr<ManagedItemSetter>> setters;
  std::vector<std::unique_ptr<ManagedItemGetter>> getters;
};

/// A database that can be down: then it answers nothing at all.
class Line : public DataAccessServiceIfc
{
public:
  explicit Line(DataAccessServiceIfc& database) : real(database)
  {
  }
  std::string sendRequest(const char* request, size_t length) override
  {
    return down ? std::string() : real.sendRequest(request, length);
  }
  bool down = false;

private:
  DataAccessServiceIfc& real;
};

/// One run of the device, from power on to power off.
class PowerOn
{
public:
  explicit PowerOn(const std::filesystem::path& folder);
  ~PowerOn();
  PowerOn(const PowerOn&) = delete;
  PowerOn& operator=(const PowerOn&) = delete;

  /// The first start of this run; a later one clears the start-up flag.
  void start();
  void restart();

  /// Result and refusals, as "done" or "failed", then each refusal as " rootId|name|reason".
  std::string set(const std::vector<std::pair<std::string, std::string>>& values);
  /// The answer, or "-" when there was none.
  std::string get(const std::string& rootId);

  /// The requests since the last call, without the declaration.
  std::vector<std::string> requests();
  /// The library's log lines since the last call, as "level text".
  std::vector<std::string> log();

  host::Device device;
  Line line;
  host::RuntimeContext context;
  Phone phone;
  std::unique_ptr<ServiceDataManagerIfc> manager;

private:
  std::filesystem::path logFile;
  std::size_t linesSeen = 0;
  std::uint64_t exchangesSeen = 0;
};

/// A device folder with an item map, gone at the end of the test; the working directory while it is there.
class Life : public ::testing::Test
{
protected:
  Life();
  ~Life() override;

  std::filesystem::path folder;

private:
  std::filesystem::path previous;
};

} // namespace scenario
