// The floors: the same work by the shortest way there is.
#include <array>
#include <cstdio>
#include <cstring>
#include <map>
#include <unordered_map>

#include <DataAccessServiceIfc.h>
#include <ManageableData.h>
#include <expat.h>

#include "Callbacks.h"
#include "Platform.h"
#include "Scenarios.h"

namespace bench
{

namespace
{

/// An item as the floors need it.
struct PlainItem
{
  std::string rootId, schema, column, row, defaultValue;
  ManagedItemSetter* setter = nullptr;
  ManagedItemGetter* getter = nullptr;
};

using Columns = std::array<const char*, 12>;

/// Reads the item map line by line and splits each.
template <typename Take>
void splitLines(Take take)
{
  std::FILE* file = std::fopen("CommsSettings.csv", "r");
  std::array<char, 501> line{};
  while (std::fgets(line.data(), static_cast<int>(line.size()), file) != nullptr)
  {
    Columns columns{};
    char* rest = line.data();
    for (const char*& column : columns)
    {
      column = rest;
      rest = std::strpbrk(rest, ",\n");
      if (rest == nullptr)
        break;
      *rest++ = '\0';
    }
    take(columns);
  }
  std::fclose(file);
}

void parse(const std::string& reply, void* userData, XML_StartElementHandler start, XML_EndElementHandler end,
           XML_CharacterDataHandler text)
{
  const XML_Parser parser = XML_ParserCreate(nullptr);
  XML_SetElementHandler(parser, start, end);
  XML_SetCharacterDataHandler(parser, text);
  XML_SetUserData(parser, userData);
  XML_Parse(parser, reply.data(), static_cast<int>(reply.size()), 1);
  XML_ParserFree(parser);
}

void ignoreStart(void*, const char*, const char**)
{
}

void ignoreEnd(void*, const char*)
{
}

void ignoreText(void*, const char*, int)
{
}

std::string readRequest(const std::string& schema)
{
  return "<Schema name=\"" + schema + "\"><ReasonForMessage>read_request</ReasonForMessage></Schema>";
}

/// The whole job by the shortest way: one table, one index by root id and one by place.
struct Composite
{
  explicit Composite(const Shape& shape)
      : workload(shape),
        platform(makePlatform(workload)),
        das(dynamic_cast<DataAccessServiceIfc*>(platform->context().findService("DataAccessServiceIfc")))
  {
    workload.writeFile();
  }

  void clear()
  {
    items.clear();
    byRootId.clear();
    byPlace.clear();
  }

  void load()
  {
    splitLines([this](const Columns& columns) { add(columns); });
  }

  void add(const Columns& columns)
  {
    auto item = std::make_unique<PlainItem>();
    item->rootId = columns[0];
    item->schema = columns[1];
    item->column = columns[2];
    item->row = columns[4];
    item->defaultValue = columns[5];
    item->setter = setter.get();
    item->getter = getter.get();
    byRootId.emplace(item->rootId, item.get());
    if (!item->schema.empty())
      byPlace.emplace(item->schema + '/' + item->column + '/' + item->row, item.get());
    items.push_back(std::move(item));
  }

  void start()
  {
    load();
    for (const auto& item : items)
      item->setter->setValue(item->defaultValue, item->row, error);
    for (const Schema& wanted : workload.schemas)
    {
      const std::string request = readRequest(wanted.name);
      schema = wanted.name;
      indexColumn = wanted.indexColumn;
      row.clear();
      parse(das->sendRequest(request.data(), request.size()), this, onStart, onEnd, onText);
    }
  }

  void set(ManageableData& record)
  {
    std::vector<std::string> rootIds;
    record.getRootIds(rootIds);
    std::map<std::string, std::string> requests;
    std::string value;
    for (const std::string& rootId : rootIds)
    {
      record.interogate(rootId, rootId, value);
      PlainItem& item = *byRootId.find(rootId)->second;
      if (!item.setter->setValue(value, item.row, error))
        continue;
      std::string& request = requests[item.schema];
      if (request.empty())
        request = "<Schema name=\"" + item.schema + "\"><ReasonForMessage>update_request</ReasonForMessage>";
      request.append("<").append(item.column).append(">").append(value);
      request.append("</").append(item.column).append(">");
    }
    for (auto& [name, request] : requests)
    {
      request += "</Schema>";
      parse(das->sendRequest(request.data(), request.size()), this, onStart, onReason, onText);
      taken = reason == "update_response";
    }
  }

  static void onStart(void* self, const char*, const char**)
  {
    static_cast<Composite*>(self)->text.clear();
  }

  static void onText(void* self, const char* begin, int length)
  {
    static_cast<Composite*>(self)->text.append(begin, static_cast<std::size_t>(length));
  }

  static void onEnd(void* pointer, const char* name)
  {
    auto& self = *static_cast<Composite*>(pointer);
    if (name == self.indexColumn)
      self.row = self.text;
    const auto item = self.byPlace.find(self.schema + '/' + name + '/' + self.row);
    if (item != self.byPlace.end())
      item->second->setter->setValue(self.text, item->second->row, self.error);
  }

  static void onReason(void* pointer, const char* name)
  {
    auto& self = *static_cast<Composite*>(pointer);
    if (std::strcmp(name, "ReasonForMessage") == 0)
      self.reason = self.text;
  }

  Workload workload;
  std::unique_ptr<Platform> platform;
  DataAccessServiceIfc* das;
  std::vector<std::unique_ptr<PlainItem>> items;
  std::map<std::string, PlainItem*> byRootId;
  std::unordered_map<std::string, PlainItem*> byPlace;
  const std::unique_ptr<ManagedItemSetter> setter = makeSetter();
  const std::unique_ptr<ManagedItemGetter> getter = makeGetter();
  std::string schema, indexColumn, row, text, reason, error;
  bool taken = false;
};

Run split(const Shape& shape)
{
  Workload(shape).writeFile();
  const auto sum = std::make_shared<std::size_t>(0);
  return {nullptr, [=] { splitLines([&](const Columns& columns) { *sum += static_cast<std::size_t>(*columns[1]); }); },
          shape.items};
}

Run expat(const Shape& shape)
{
  const auto composite = std::make_shared<Composite>(shape);
  const auto replies = std::make_shared<std::vector<std::string>>();
  for (const Schema& schema : composite->workload.schemas)
  {
    const std::string request = readRequest(schema.name);
    replies->push_back(composite->das->sendRequest(request.data(), request.size()));
  }
  return {nullptr,
          [=]
          {
            for (const std::string& reply : *replies)
              parse(reply, nullptr, ignoreStart, ignoreEnd, ignoreText);
          },
          composite->workload.databaseIds(shape.items).size()};
}

Run lookUp(const Shape& shape, std::size_t count)
{
  const auto composite = std::make_shared<Composite>(shape);
  composite->load();
  const std::vector<std::string> rootIds = composite->workload.databaseIds(count);
  const auto length = std::make_shared<std::size_t>(0);
  return {nullptr,
          [=]
          {
            for (const std::string& rootId : rootIds)
            {
              const PlainItem& item = *composite->byRootId.find(rootId)->second;
              *length += item.getter->getValue(item.row).size();
            }
          },
          rootIds.size()};
}

/// What the record alone does when its items are read.
Run record(const Shape& shape, std::size_t count)
{
  const std::vector<std::string> rootIds = Workload(shape).databaseIds(count);
  const auto data = std::make_shared<ManageableData>();
  for (const std::string& rootId : rootIds)
    data->addRootId(rootId, nullptr);
  const std::string value = liveValue;
  return {nullptr,
          [=]
          {
            std::vector<std::string> asked;
            data->getRootIds(asked);
            for (const std::string& rootId : asked)
              data->populate(rootId, rootId, value);
          },
          rootIds.size()};
}

Run compositeStart(const Shape& shape)
{
  const auto composite = std::make_shared<Composite>(shape);
  return {[=] { composite->clear(); }, [=] { composite->start(); }, shape.items};
}

Run compositeSet(const Shape& shape, std::size_t count, std::size_t schemas)
{
  const auto composite = std::make_shared<Composite>(shape);
  composite->load();
  const auto data = std::make_shared<ManageableData>();
  const std::vector<std::string> rootIds =
      schemas == 0 ? composite->workload.databaseIds(count) : composite->workload.spreadIds(count, schemas);
  for (const std::string& rootId : rootIds)
    data->populate(rootId, rootId, newValue);
  return {nullptr, [=] { composite->set(*data); }, rootIds.size()};
}

Scenario compositeSetScenario(std::size_t count, std::size_t schemas)
{
  return {"composite/set/" + std::to_string(count) + "in" + std::to_string(schemas),
          {12000, count == 1000 && schemas == 1 ? std::size_t{2000} : 200, false},
          false,
          [=](const Shape& shape) { return compositeSet(shape, count, schemas); }};
}

} // namespace

std::vector<Scenario> floors()
{
  const Shape shape{1000, 50, false};
  return {
      {"floor/split", shape, true, split},
      {"floor/expat", shape, true, expat},
      {"floor/expat/wide", {1000, 1000, false}, false, expat},
      {"floor/expat/rows", {1000, 1000, false, false, 100}, false, expat},
      {"floor/lookup", shape, true, [](const Shape& wanted) { return lookUp(wanted, wanted.items); }},
      {"floor/lookup/1", shape, false, [](const Shape& wanted) { return lookUp(wanted, 1); }},
      {"floor/record", shape, true, [](const Shape& wanted) { return record(wanted, wanted.items); }},
      {"floor/record/1", shape, false, [](const Shape& wanted) { return record(wanted, 1); }},
      {"composite/start", shape, true, compositeStart},
      {"composite/set/all", shape, true, [](const Shape& wanted) { return compositeSet(wanted, wanted.items, 0); }},
      compositeSetScenario(1, 1),
      compositeSetScenario(10, 1),
      compositeSetScenario(10, 10),
      compositeSetScenario(1000, 1),
      compositeSetScenario(1000, 10),
  };
}

} // namespace bench
