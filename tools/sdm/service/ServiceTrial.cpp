// Each item alone first, then each group, with defaults and with alternative defaults.
#include "ServiceTrial.h"

#include <algorithm>
#include <set>

#include "base/Shown.h"
#include "host/Error.h"
#include "map/MapCopy.h"
#include "map/Schemas.h"

namespace cli
{
namespace
{

constexpr const char* itemMap = "CommsItemMap";

std::unique_ptr<host::Device> silentDevice(const std::filesystem::path& folder)
{
  host::DeviceSettings settings;
  settings.folder = folder;
  settings.logLevel = 0;
  settings.consoleLevel = 0;
  return std::make_unique<host::Device>(settings);
}

/// Items of the local store have no default that anybody would give them; members of groups are tried with their group.
bool isTriedAlone(const MapItem& item, DefaultKind kind)
{
  return !item.isLocal() && item.group.empty() && (kind == DefaultKind::usual || item.hasAlternative());
}

} // namespace

ServiceTrial::ServiceTrial(const std::filesystem::path& service, const std::filesystem::path& map,
                           const std::filesystem::path& scratch, const TrialReport& itsReport)
    : report(itsReport), loaded(service), table(map), masks(table), device(silentDevice(scratch))
{
  copyMap(map, scratch / "CommsSettings.csv");
  std::filesystem::current_path(scratch);
}

void ServiceTrial::run()
{
  provision();
  report.step("at its start");
  if (!report.guarded("", "the service", "start-throws",
                      [&] { running = std::make_unique<RunningService>(loaded.service(), device->context(), table); }))
    return;
  report.guarded("", "the service", "start-throws", [&] { running->start(itemMap); });
  resolve();
  for (const DefaultKind kind : {DefaultKind::usual, DefaultKind::alternative})
    tryDefaults(kind);
  report.step("at its end");
  device->store().forgetAgent(&running->agent());
  running.reset();
}

void ServiceTrial::provision()
{
  try
  {
    device->das().provision(schemasOf(table));
    device->das().provision(loaded.provisioning());
  }
  catch (const host::Error&)
  {
    // A map that fits no database is for others to judge; callbacks can be tried all the same.
  }
}

void ServiceTrial::tryDefaults(DefaultKind kind)
{
  const ItemTrial items(*running, masks, report);
  for (const std::string& rootId : table.rootIds())
  {
    const MapItem& item = *table.find(rootId);
    if (isTriedAlone(item, kind) && items.set(item, kind))
      items.compare(item, kind);
  }
  const GroupTrial trial(*running, items, report);
  for (const auto& [group, members] : groups())
    trial.run(group, members, kind);
}

void ServiceTrial::resolve()
{
  std::set<std::string> setters;
  std::set<std::string> getters;
  for (const std::string& rootId : table.rootIds())
  {
    const MapItem& item = *table.find(rootId);
    setters.insert(item.setter);
    getters.insert(item.getter);
    if (!item.setter.empty() && !running->manager().hasSetter(item.setter))
      report.find(rootId, "unresolved-setter", "the service registers no setter " + shownValue(item.setter));
    if (!item.getter.empty() && !running->manager().hasGetter(item.getter))
      report.find(rootId, "unresolved-getter", "the service registers no getter " + shownValue(item.getter));
  }
  for (const std::string& name : running->manager().setterNames())
  {
    if (setters.count(name) == 0)
      report.find("", "unused-setter", "no item names the setter " + shownValue(name));
  }
  for (const std::string& name : running->manager().getterNames())
  {
    if (getters.count(name) == 0)
      report.find("", "unused-getter", "no item names the getter " + shownValue(name));
  }
}

std::vector<std::pair<std::string, GroupTrial::Members>> ServiceTrial::groups() const
{
  std::vector<std::pair<std::string, GroupTrial::Members>> found;
  for (const std::string& rootId : table.rootIds())
  {
    const MapItem* item = table.find(rootId);
    if (item->group.empty() || item->isLocal())
      continue;
    auto group = std::find_if(found.begin(), found.end(), [&](const auto& each) { return each.first == item->group; });
    if (group == found.end())
      group = found.insert(found.end(), {item->group, {}});
    group->second.push_back(item);
  }
  return found;
}

} // namespace cli
