// The host platform as a subject of the contract's tests.
#include <filesystem>
#include <stdexcept>

#include "PlatformUnderTest.h"
#include "ServicesUnderTest.h"
#include "host/Device.h"
#include "host/DeviceLog.h"
#include "host/KeyFile.h"

#include <cstdlib>

namespace
{
/// A folder that goes away with its owner.
class Folder
{
public:
  Folder()
  {
    std::string name = (std::filesystem::temp_directory_path() / "contract-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
      throw std::runtime_error("no temporary folder");
    path = name;
  }
  ~Folder()
  {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::filesystem::path path;
};

class HostServices : public contract::Services
{
public:
  HostServices()
  {
    host::listenToLog([this](const host::LogLine& line) { lines.push_back(line.text); });
    device.das().provision({{"Plain", "", {"A", "B"}, {}}, {"Rows", "Idx", {"A", "B"}, {}}});
  }
  ~HostServices() override
  {
    host::listenToLog({});
  }
  HostServices(const HostServices&) = delete;
  HostServices& operator=(const HostServices&) = delete;

  SvcRTEContext& context() override
  {
    return device.context();
  }
  std::uint32_t interfaceCount() override
  {
    return settings.interfaceCount;
  }
  std::vector<std::string> securityRecords() override
  {
    return device.securityLog().lastLines(1000);
  }
  std::vector<std::string> logLines() override
  {
    return lines;
  }
  DataAccessServiceIfc& das() override
  {
    return device.traffic();
  }
  LocalMgmtIfc& store() override
  {
    return device.store();
  }
  void change(const std::string& rootId, const std::string& value) override
  {
    device.store().change(rootId, value);
  }
  void defineDictionary(const std::string& name, const std::string& rootId) override
  {
    device.store().defineDictionary(name, {{"/item[1]/rootId", rootId}});
  }
  void lockItem(const std::string& rootId) override
  {
    device.store().lockItem(rootId);
  }

private:
  /// Silent, and with another number of interfaces than a device has without being told.
  static host::DeviceSettings settingsIn(const std::filesystem::path& folder)
  {
    host::DeviceSettings settings;
    settings.folder = folder;
    settings.interfaceCount = 3;
    settings.consoleLevel = 0;
    return settings;
  }

  std::vector<std::string> lines;
  Folder folder;
  const host::DeviceSettings settings = settingsIn(folder.path / "device");
  host::Device device{settings};
};
} // namespace

void contract::prepareEncryption()
{
  static const Folder folder;
  host::useKeyFile(folder.path / "key");
}

std::unique_ptr<contract::Platform> contract::makePlatform()
{
  return std::make_unique<HostServices>();
}

std::unique_ptr<contract::Services> contract::makeServices()
{
  return std::make_unique<HostServices>();
}
