// The library's operations as scenarios.
#include <stdexcept>

#include <ManageableData.h>

#include "Scenarios.h"
#include "Subject.h"

namespace bench
{

namespace
{

using Access = ServiceDataManagerTestAccess;
using SubjectPtr = std::shared_ptr<Subject>;

SubjectPtr started(const Shape& shape, bool withGetters = true)
{
  const auto subject = std::make_shared<Subject>(shape);
  subject->startManager(withGetters);
  return subject;
}

std::shared_ptr<ManageableData> request(const std::vector<std::string>& rootIds)
{
  const auto record = std::make_shared<ManageableData>();
  for (const std::string& rootId : rootIds)
    record->addRootId(rootId, nullptr);
  return record;
}

std::shared_ptr<ManageableData> setRequest(const std::vector<std::string>& rootIds, const char* value)
{
  const auto record = std::make_shared<ManageableData>();
  for (const std::string& rootId : rootIds)
    record->populate(rootId, rootId, value);
  return record;
}

/// What fails is not worth measuring.
void require(bool done, const char* what)
{
  if (!done)
    throw std::runtime_error(std::string(what) + " failed");
}

Run load(const Shape& shape, const char* map)
{
  const auto subject = std::make_shared<Subject>(shape);
  return {[=] { subject->renewManager(); }, [=] { Access::load(*subject->manager, map); }, shape.items};
}

Run start(const Shape& shape)
{
  const auto subject = std::make_shared<Subject>(shape);
  return {[=] { subject->renewManager(); }, [=] { subject->manager->initialise("CommsItemMap"); }, shape.items};
}

Run cache(const Shape& shape)
{
  const SubjectPtr subject = started(shape);
  return {[=] { Access::noteChanges(*subject->manager, false); }, [=] { Access::initialiseCache(*subject->manager); },
          subject->workload.databaseIds(shape.items).size()};
}

Run import(const Shape& shape)
{
  const SubjectPtr subject = started(shape);
  return {nullptr, [=] { Access::import(*subject->manager); }, subject->workload.databaseIds(shape.items).size()};
}

Run publish(const Shape& shape)
{
  const SubjectPtr subject = started(shape);
  return {[=] { Access::noteChanges(*subject->manager, true); }, [=] { Access::publish(*subject->manager); },
          shape.items};
}

Run set(const Shape& shape, const std::function<std::vector<std::string>(const Workload&)>& choose)
{
  const SubjectPtr subject = started(shape);
  const std::vector<std::string> rootIds = choose(subject->workload);
  if (shape.grouped)
    subject->validator.hold(subject->workload, rootIds);
  return {nullptr,
          [subject, record = setRequest(rootIds, newValue), next = setRequest(rootIds, nextValue)]() mutable
          {
            record.swap(next);
            subject->validator.turn();
            require(subject->manager->setData(*record), "a set");
          },
          rootIds.size()};
}

Scenario setScenario(std::size_t count, std::size_t schemas, bool grouped)
{
  const std::string name = "set/" + std::to_string(count) + "in" + std::to_string(schemas);
  const Shape shape{12000, count == 1000 && schemas == 1 ? std::size_t{2000} : 200, grouped};
  return {name + (grouped ? "/grouped" : ""), shape, false, [=](const Shape& wanted) {
            return set(wanted, [=](const Workload& workload) { return workload.spreadIds(count, schemas); });
          }};
}

Run setAll(const Shape& shape)
{
  return set(shape, [](const Workload& workload) { return workload.databaseIds(workload.items.size()); });
}

Run get(const Shape& shape, std::size_t count, bool withGetters)
{
  const SubjectPtr subject = started(shape, withGetters);
  const std::vector<std::string> rootIds = subject->workload.databaseIds(count);
  const auto record = request(rootIds);
  return {nullptr, [=] { require(subject->manager->getData(*record), "a get"); }, rootIds.size()};
}

Run changed(const Shape& shape, std::size_t count)
{
  const SubjectPtr subject = started(shape);
  const std::vector<std::string> rootIds = subject->workload.storeIds(count);
  const auto record = setRequest(rootIds, newValue);
  return {nullptr, [=] { subject->manager->manageableDataChanged(*record); }, rootIds.size()};
}

/// Each time the database holds something else than the defaults.
Run userDefaults(const Shape& shape)
{
  const SubjectPtr subject = started(shape);
  const std::vector<std::string> rootIds = subject->workload.databaseIds(shape.items);
  const auto others = setRequest(rootIds, newValue);
  return {[=] { require(subject->manager->setData(*others), "a set"); },
          [=] { require(subject->manager->setDefaultUserData(), "user data"); }, rootIds.size()};
}

Run userReload(const Shape& shape)
{
  const SubjectPtr subject = started(shape);
  return {nullptr, [=] { subject->manager->reloadUserData(); }, subject->workload.databaseIds(shape.items).size()};
}

Run lookUp(const Shape& shape)
{
  const SubjectPtr subject = started(shape);
  const std::vector<std::string> rootIds = subject->workload.databaseIds(shape.items);
  return {nullptr,
          [=]
          {
            for (const std::string& rootId : rootIds)
              subject->manager->getPublishedItem(rootId);
          },
          rootIds.size()};
}

Scenario scaling(const char* name, const std::function<Run(const Shape&)>& make, bool shuffled = false)
{
  return {name, {1000, 50, false, false, 0, shuffled}, true, make};
}

Scenario fixed(const char* name, const std::function<Run(const Shape&)>& make)
{
  return {name, {1000, 50, false}, false, make};
}

} // namespace

std::vector<Scenario> operations()
{
  std::vector<Scenario> all = {
      scaling("load/file", [](const Shape& shape) { return load(shape, "CommsItemMap"); }),
      scaling(
          "load/shuffled", [](const Shape& shape) { return load(shape, "CommsItemMap"); }, true),
      scaling("load/dictionary", [](const Shape& shape) { return load(shape, dictionaryName); }),
      scaling("cache", cache),
      scaling("import", import),
      {"import/wide", {1000, 1000, false}, false, import},
      {"import/rows", {1000, 1000, false, false, 100}, false, import},
      scaling("start", start),
      scaling("set/all", setAll),
      scaling("get/getter", [](const Shape& shape) { return get(shape, shape.items, true); }),
      fixed("get/getter/1", [](const Shape& shape) { return get(shape, 1, true); }),
      scaling("get/database", [](const Shape& shape) { return get(shape, shape.items, false); }),
      fixed("get/database/1", [](const Shape& shape) { return get(shape, 1, false); }),
      scaling("changed", [](const Shape& shape) { return changed(shape, shape.items); }),
      fixed("changed/1", [](const Shape& shape) { return changed(shape, 1); }),
      scaling("publish", publish),
      {"user/defaults", {1000, 50, false, true}, true, userDefaults},
      {"user/reload", {1000, 50, false, true}, true, userReload},
      scaling("lookup", lookUp),
      scaling("lookup/shuffled", lookUp, true),
  };
  for (const bool grouped : {false, true})
  {
    for (const auto& [count, schemas] :
         {std::pair<std::size_t, std::size_t>{1, 1}, {10, 1}, {10, 10}, {1000, 1}, {1000, 10}})
      all.push_back(setScenario(count, schemas, grouped));
  }
  return all;
}

} // namespace bench
