#include "ManagerTest.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace unit
{

namespace
{

std::string makeDirectory()
{
  std::string pattern = (std::filesystem::temp_directory_path() / "sdm-unit-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr)
    throw std::runtime_error("no temporary directory");
  return pattern;
}

} // namespace

ManagerTest::ManagerTest()
    : owned((recording::reset(), std::make_unique<ServiceDataManager>())),
      manager(*owned),
      access(manager),
      directory(makeDirectory()),
      previousDirectory(std::filesystem::current_path().string())
{
  std::filesystem::current_path(directory);
  context.services = {{"DataAccessServiceIfc", &das},
                      {"PhysicalInterfaceServiceIfc", &interfaces},
                      {"LocalMgmtIfc", &store},
                      {"SecurityLogServiceIfc", &securityLog}};
  manager.setup(&context, &agent, "phone", &validator);
  recording::trace().clear();
}

ManagerTest::~ManagerTest()
{
  if (owned != nullptr)
  {
    owned->deleteSetters();
    owned->deleteGetters();
  }
  std::filesystem::current_path(previousDirectory);
  std::filesystem::remove_all(directory);
}

recording::Setter& ManagerTest::setter(const std::string& name)
{
  recording::Setter*& known = setters[name];
  if (known == nullptr)
  {
    known = new recording::Setter(name);
    manager.addSetter({name.c_str(), known});
  }
  return *known;
}

recording::Getter& ManagerTest::getter(const std::string& name)
{
  recording::Getter*& known = getters[name];
  if (known == nullptr)
  {
    known = new recording::Getter(name);
    manager.addGetter({name.c_str(), known});
  }
  return *known;
}

void ManagerTest::load(const std::vector<ItemLine>& lines)
{
  for (const ItemLine& line : lines)
  {
    if (!line.setter.empty())
      setter(line.setter);
    if (!line.getter.empty())
      getter(line.getter);
    access.addDataItem(line.rootId, line.dasSchema, line.dasItem, line.dasIndexName, line.dasIndexValue,
                       line.defaultValue, line.setter, line.getter, line.isGroupItem, line.dasEncrypted);
    if (!line.userData.empty())
      access.userDataIds.push_back(line.rootId);
  }
  access.buildIndexes();
}

ManagedDataItem& ManagerTest::item(const std::string& rootId)
{
  for (ManagedDataItem* candidate : access.items)
  {
    if (candidate->rootId == rootId)
      return *candidate;
  }
  throw std::runtime_error("no item " + rootId);
}

void ManagerTest::writeItemMap(const std::string& text)
{
  std::ofstream("CommsSettings.csv", std::ios::binary) << text;
}

std::unique_ptr<ManageableData> ManagerTest::request(const std::vector<std::pair<std::string, std::string>>& values)
{
  auto data = std::make_unique<ManageableData>();
  for (const auto& [rootId, value] : values)
    data->populate(rootId, rootId, value);
  return data;
}

std::string replyOf(const std::string& kind, const std::string& schema, const std::string& elements)
{
  return R"(<?xml version="1.0" encoding="utf-8"?><Schema name=")" + schema + R"("><ReasonForMessage>)" + kind +
         "</ReasonForMessage>" + elements + "</Schema>";
}

std::string readReply(const std::string& schema, const std::string& elements)
{
  return replyOf("read_response", schema, elements);
}

std::string updateReply()
{
  return replyOf("update_response", "any", "");
}

} // namespace unit
