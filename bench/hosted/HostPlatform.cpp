// The host platform in the working directory, provisioned with the workload.
#include <filesystem>
#include <stdexcept>

#include <ManageableData.h>
#include <host/Device.h>

#include "Platform.h"

namespace bench
{

const char* const dictionaryName = "Dictionary";

namespace
{

std::string element(const std::string& name, const std::string& content)
{
  return "<" + name + ">" + content + "</" + name + ">";
}

class HostPlatform : public Platform
{
public:
  explicit HostPlatform(const Workload& workload) : device((std::filesystem::remove_all("device"), settings()))
  {
    std::vector<host::SchemaDefinition> definitions;
    for (const Schema& schema : workload.schemas)
      definitions.push_back({schema.name, schema.indexColumn, schema.columns, schema.indexValues});
    device.das().provision(definitions);
    for (const Schema& schema : workload.schemas)
      fill(schema);
    device.store().defineDictionary(dictionaryName, workload.dictionary());
    ManageableData values;
    for (const std::string& rootId : workload.storeIds(workload.items.size()))
      values.populate(rootId, rootId, liveValue);
    if (!device.store().publishData(values))
      throw std::runtime_error("the local management store was not filled");
  }

  SvcRTEContext& context() override
  {
    return device.context();
  }

private:
  /// Nothing is logged but failures, as on a device in service.
  static host::DeviceSettings settings()
  {
    host::DeviceSettings chosen;
    chosen.folder = "device";
    return chosen;
  }

  void fill(const Schema& schema)
  {
    std::string cells;
    for (const std::string& column : schema.columns)
      cells += element(column, liveValue);
    std::string content = schema.indexValues.empty() ? cells : "";
    for (const std::string& row : schema.indexValues)
      content += element("Entry", element(schema.indexColumn, row) + cells);
    const std::string request =
        "<Schema name=\"" + schema.name + "\">" + element("ReasonForMessage", "update_request") + content + "</Schema>";
    const std::string reply = device.das().sendRequest(request.data(), request.size());
    if (reply.find("update_response") == std::string::npos)
      throw std::runtime_error("schema " + schema.name + " was not filled: " + reply);
  }

  host::Device device;
};

} // namespace

std::unique_ptr<Platform> makePlatform(const Workload& workload)
{
  return std::make_unique<HostPlatform>(workload);
}

} // namespace bench
