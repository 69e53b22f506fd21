// The floors: the same work by the shortest way there is.
#include <ManageableData.h>

#include "Composite.h"
#include "Scenarios.h"

namespace bench
{

namespace
{

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
    replies->push_back(composite->ask(request));
  }
  return {nullptr,
          [=]
          {
            for (const std::string& reply : *replies)
              parseOnly(reply);
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
  const std::vector<std::string> rootIds =
      schemas == 0 ? composite->workload.databaseIds(count) : composite->workload.spreadIds(count, schemas);
  auto data = std::make_shared<ManageableData>();
  auto next = std::make_shared<ManageableData>();
  for (const std::string& rootId : rootIds)
  {
    data->populate(rootId, rootId, newValue);
    next->populate(rootId, rootId, nextValue);
  }
  return {nullptr,
          [composite, data, next]() mutable
          {
            data.swap(next);
            composite->set(*data);
          },
          rootIds.size()};
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
