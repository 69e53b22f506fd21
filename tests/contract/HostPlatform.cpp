// The host platform as a subject of the contract's tests.
#include <filesystem>
#include <stdexcept>

#include "PlatformUnderTest.h"
#include "ServicesUnderTest.h"
#include "host/DasCrypt.h"
#include "host/Device.h"

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
    device.das().provision({{"Plain", "", {"A", "B"}, {}}, {"Rows", "Idx", {"A", "B"}, {}}});
  }
  SvcRTEContext& context() override
  {
    return device.context();
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
  Folder folder;
  host::Device device{{folder.path / "device"}};
};
} // namespace

void contract::prepareEncryption()
{
  static const Folder folder;
  host::useKeyFile(folder.path / "key");
}

std::unique_ptr<contract::Services> contract::makeServices()
{
  return std::make_unique<HostServices>();
}
