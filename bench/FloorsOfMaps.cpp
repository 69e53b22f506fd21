// Floors of the operations that handle every item of a map: how they grow with it tells how the operations have to.
#include <unordered_map>

#include <ManageableData.h>

#include "Composite.h"
#include "Scenarios.h"

namespace bench
{

namespace
{

using CompositePtr = std::shared_ptr<Composite>;
using Texts = std::vector<std::string>;

CompositePtr loaded(const Shape& shape)
{
  const auto composite = std::make_shared<Composite>(shape);
  composite->load();
  return composite;
}

Run load(const Shape& shape)
{
  const auto composite = std::make_shared<Composite>(shape);
  return {[=] { composite->clear(); }, [=] { composite->load(); }, shape.items};
}

Run cache(const Shape& shape)
{
  const CompositePtr composite = loaded(shape);
  return {nullptr, [=] { composite->fillCache(); }, shape.items};
}

/// The record's part of reading a dictionary: keys are made beforehand.
Run dictionary(const Shape& shape)
{
  const auto composite = std::make_shared<Composite>(shape);
  const auto keys = std::make_shared<Texts>();
  for (const auto& entry : composite->workload.dictionary())
    keys->push_back(entry.first);
  return {nullptr,
          [=]
          {
            ManageableData record;
            std::string value;
            for (const std::string& key : *keys)
              record.interogate(dictionaryName, key, value);
          },
          shape.items};
}

/// Nothing but finding every item of the database by its root id.
template <typename Index>
Run find(const Shape& shape)
{
  const auto index = std::make_shared<Index>();
  const Texts rootIds = Workload(shape).databaseIds(shape.items);
  for (const std::string& rootId : rootIds)
    index->emplace(rootId, index->size());
  const auto sum = std::make_shared<std::size_t>(0);
  return {nullptr,
          [=]
          {
            for (const std::string& rootId : rootIds)
              *sum += index->find(rootId)->second;
          },
          rootIds.size()};
}

Run changed(const Shape& shape)
{
  const CompositePtr composite = loaded(shape);
  const Texts rootIds = composite->workload.storeIds(shape.items);
  const auto record = std::make_shared<ManageableData>();
  for (const std::string& rootId : rootIds)
    record->populate(rootId, rootId, newValue);
  return {nullptr,
          [=]
          {
            std::string value;
            for (const std::string& rootId : rootIds)
            {
              record->interogate(rootId, rootId, value);
              const PlainItem& item = *composite->byRootId.find(rootId)->second;
              item.setter->setValue(value, item.row, composite->error);
            }
          },
          rootIds.size()};
}

/// A request for every item of the database, made beforehand: of its column, or for a new value in it.
std::shared_ptr<Texts> requests(const Composite& composite, bool update)
{
  const auto texts = std::make_shared<Texts>();
  for (const auto& item : composite.items)
  {
    if (item->schema.empty())
      continue;
    const std::string reason = update ? "update_request" : "read_request";
    const std::string wanted = update ? "<" + item->column + ">" + defaultValue + "</" + item->column + ">"
                                      : "<ResultCols>" + item->column + "</ResultCols>";
    texts->push_back("<Schema name=\"" + item->schema + "\"><ReasonForMessage>" + reason + "</ReasonForMessage>" +
                     wanted + "</Schema>");
  }
  return texts;
}

/// One request and one parse of its reply for every item.
Run ask(const Shape& shape, bool update)
{
  const CompositePtr composite = loaded(shape);
  const auto texts = requests(*composite, update);
  return {nullptr,
          [=]
          {
            for (const std::string& request : *texts)
              parseOnly(composite->ask(request));
          },
          texts->size()};
}

/// One request for every item, and one set of them all.
Run reload(const Shape& shape)
{
  const CompositePtr composite = loaded(shape);
  const auto texts = requests(*composite, false);
  const auto record = std::make_shared<ManageableData>();
  for (const std::string& rootId : composite->workload.databaseIds(shape.items))
    record->populate(rootId, rootId, newValue);
  const auto length = std::make_shared<std::size_t>(0);
  return {nullptr,
          [=]
          {
            for (const std::string& request : *texts)
              *length += composite->ask(request).size();
            composite->set(*record);
          },
          texts->size()};
}

Scenario scaling(const char* name, const std::function<Run(const Shape&)>& make, bool shuffled = false)
{
  return {name, {1000, 50, false, false, 0, shuffled}, true, make};
}

} // namespace

std::vector<Scenario> floorsOfMaps()
{
  using Map = std::map<std::string, std::size_t>;
  return {
      scaling("composite/load", load),
      scaling("composite/load/shuffled", load, true),
      scaling("composite/cache", cache),
      scaling("composite/changed", changed),
      scaling("composite/reload", reload),
      scaling("floor/dictionary", dictionary),
      scaling("floor/map", find<Map>),
      scaling("floor/map/shuffled", find<Map>, true),
      scaling("floor/hash", find<std::unordered_map<std::string, std::size_t>>),
      scaling("floor/hash/shuffled", find<std::unordered_map<std::string, std::size_t>>, true),
      scaling("floor/cell", [](const Shape& shape) { return ask(shape, false); }),
      scaling("floor/update", [](const Shape& shape) { return ask(shape, true); }),
  };
}

} // namespace bench
