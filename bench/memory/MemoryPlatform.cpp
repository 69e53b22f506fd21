// Services that answer from texts made beforehand.
#include <list>
#include <string_view>

#include <DataAccessServiceIfc.h>
#include <LocalMgmtIfc.h>
#include <ManageableData.h>
#include <PhysicalInterfaceServiceIfc.h>

#include "Dictionary.h"
#include "Numbers.h"
#include "Platform.h"
#include "Scenarios.h"

namespace bench
{

const char* const dictionaryName = "Dictionary";

namespace
{

std::string element(const std::string& name, const std::string& content)
{
  return "<" + name + ">" + content + "</" + name + ">";
}

std::string reply(const std::string& schema, const char* kind, const std::string& content)
{
  return "<Schema name=\"" + schema + "\">" + element("ReasonForMessage", kind) + content + "</Schema>";
}

class Das : public DataAccessServiceIfc
{
public:
  explicit Das(const Workload& workload)
  {
    for (const Schema& schema : workload.schemas)
      add(schema);
  }

  std::string sendRequest(const char* request, std::size_t length) override
  {
    const std::string_view text(request, length);
    const Answers& answers = schemas.at(numberAtEnd(between(text, "name=\"", "\"")));
    if (text.find("update_request") != std::string_view::npos)
      return answers.update;
    const std::string_view column = between(text, "<ResultCols>", "<");
    return column.empty() ? answers.all : answers.columns.at(numberAtEnd(column) - answers.firstColumn);
  }

private:
  struct Answers
  {
    std::string all;
    std::string update;
    std::size_t firstColumn = 0;
    std::vector<std::string> columns;
  };

  static std::string_view between(std::string_view text, std::string_view before, std::string_view behind)
  {
    const std::size_t found = text.find(before);
    if (found == std::string_view::npos)
      return {};
    const std::size_t begin = found + before.size();
    return text.substr(begin, text.find(behind, begin) - begin);
  }

  static std::string rows(const Schema& schema, const std::string& columns)
  {
    if (schema.indexColumn.empty())
      return columns;
    std::string entries;
    for (const std::string& value : schema.indexValues)
      entries += element("Entry", element(schema.indexColumn, value) + columns);
    return entries;
  }

  void add(const Schema& schema)
  {
    Answers& answers = entryAt(schemas, numberAtEnd(schema.name));
    answers.firstColumn = schema.columns.empty() ? 0 : numberAtEnd(schema.columns.front());
    std::string columns;
    for (const std::string& column : schema.columns)
    {
      const std::string cell = element(column, liveValue);
      columns += cell;
      entryAt(answers.columns, numberAtEnd(column) - answers.firstColumn) =
          reply(schema.name, "read_response", rows(schema, cell));
    }
    answers.all = reply(schema.name, "read_response", rows(schema, columns));
    answers.update = reply(schema.name, "update_response", "");
  }

  std::vector<Answers> schemas;
};

/// Holds one value for all, and one dictionary.
class Store : public LocalMgmtIfc
{
public:
  explicit Store(const Workload& workload) : dictionary(workload)
  {
  }

  bool registerService(const std::string&, MgmtAgentIfc*, int) override
  {
    return true;
  }

  bool lookupData(ManageableData& data) override
  {
    if (data.getRootId() == dictionaryName)
      return true; // Records read it by themselves.
    std::vector<std::string> rootIds;
    data.getRootIds(rootIds);
    for (const std::string& rootId : rootIds)
      data.populate(rootId, rootId, liveValue);
    return true;
  }

  bool subscribe(std::list<std::string>&, MgmtAgentIfc*) override
  {
    return true;
  }

  bool publishData(ManageableData&) override
  {
    return true;
  }

  bool checkData(ManageableData&, void*) override
  {
    return true;
  }

private:
  const Dictionary dictionary;
};

class Interfaces : public PhysicalInterfaceServiceIfc
{
public:
  std::uint32_t getInterfaceCount() override
  {
    return 1;
  }
};

class MemoryPlatform : public Platform, public SvcRTEContext
{
public:
  explicit MemoryPlatform(const Workload& workload) : das(workload), store(workload)
  {
  }

  SvcRTEContext& context() override
  {
    return *this;
  }

  Executable* findService(const std::string& interfaceName) override
  {
    if (interfaceName == "DataAccessServiceIfc")
      return &das;
    if (interfaceName == "LocalMgmtIfc")
      return &store;
    return interfaceName == "PhysicalInterfaceServiceIfc" ? &interfaces : nullptr;
  }

private:
  Das das;
  Store store;
  Interfaces interfaces;
};

} // namespace

std::unique_ptr<Platform> makePlatform(const Workload& workload)
{
  return std::make_unique<MemoryPlatform>(workload);
}

std::vector<Scenario> platformFloors()
{
  return {};
}

} // namespace bench
