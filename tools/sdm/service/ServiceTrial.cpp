#include "ServiceTrial.h"

#include <RejectReasonsStrings.h>

#include <algorithm>
#include <exception>
#include <set>
#include <utility>

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

/// What the manager would take for a refusal.
bool isRefused(bool accepted, const std::string& reason)
{
  return !accepted && reason.rfind(RejectReasonsStrings::not_changed, 0) != 0;
}

std::string because(const std::string& reason)
{
  return reason.empty() ? ", without a reason" : ": " + shown(reason);
}

} // namespace

ServiceTrial::ServiceTrial(const std::filesystem::path& service, const std::filesystem::path& map,
                           const std::filesystem::path& scratch, const Listener& itsListener)
    : listener(itsListener), loaded(service), table(map), masks(table), device(silentDevice(scratch))
{
  copyMap(map, scratch / "CommsSettings.csv");
  std::filesystem::current_path(scratch);
}

void ServiceTrial::run()
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
  listener.step("at its start");
  if (!guarded("", "the service", "start-throws",
               [&] { running = std::make_unique<RunningService>(loaded.service(), device->context(), table); }))
    return;
  guarded("", "the service", "start-throws", [&] { running->start(itemMap); });
  resolve();
  for (const Kind kind : {Kind::byDefault, Kind::alternative})
  {
    for (const std::string& rootId : table.rootIds())
      tryAlone(*table.find(rootId), kind);
    for (const auto& [group, members] : groups())
      tryGroup(group, members, kind);
  }
  listener.step("at its end");
  device->store().forgetAgent(&running->agent());
  running.reset();
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
      find(rootId, "unresolved-setter", "the service registers no setter " + shownValue(item.setter));
    if (!item.getter.empty() && !running->manager().hasGetter(item.getter))
      find(rootId, "unresolved-getter", "the service registers no getter " + shownValue(item.getter));
  }
  for (const std::string& name : running->manager().setterNames())
  {
    if (setters.count(name) == 0)
      find("", "unused-setter", "no item names the setter " + shownValue(name));
  }
  for (const std::string& name : running->manager().getterNames())
  {
    if (getters.count(name) == 0)
      find("", "unused-getter", "no item names the getter " + shownValue(name));
  }
}

std::vector<std::pair<std::string, ServiceTrial::Members>> ServiceTrial::groups() const
{
  std::vector<std::pair<std::string, Members>> found;
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

// Items of the local store have no default that anybody would give them.
void ServiceTrial::tryAlone(const MapItem& item, Kind kind)
{
  if (item.isLocal() || !item.group.empty() || (kind == Kind::alternative && item.alternativeDefault.empty()))
    return;
  if (set(item, kind))
    compare(item, kind);
}

void ServiceTrial::tryGroup(const std::string& group, const Members& members, Kind kind)
{
  const auto hasAlternative = [](const MapItem* item) { return !item->alternativeDefault.empty(); };
  if (kind == Kind::alternative && std::none_of(members.begin(), members.end(), hasAlternative))
    return;
  const MapItem& first = *members.front();
  if (running->validator() == nullptr)
  {
    if (kind == Kind::byDefault)
      find(first.rootId, "no-validator", "its group " + shown(group) + " fails always: the service has no validator");
    return;
  }
  const auto clear = [&] { running->validator()->clearGroup(group); };
  guarded(first.rootId, "the validator", "validator-throws", clear);
  bool complete = true;
  for (const MapItem* member : members)
    complete = set(*member, kind) && complete;
  // With a member missing the verdict would be about something else.
  if (complete && judge(group, first, kind))
  {
    for (const MapItem* member : members)
      compare(*member, kind);
    compareValidItems(group, members);
  }
  guarded(first.rootId, "the validator", "validator-throws", clear);
}

bool ServiceTrial::set(const MapItem& item, Kind kind)
{
  ManagedItemSetter* setter = running->manager().setter(item.setter);
  if (setter == nullptr)
    return true;
  const bool alternative = kind == Kind::alternative && !item.alternativeDefault.empty();
  const std::string& value = alternative ? item.alternativeDefault : item.defaultValue;
  const std::string what = alternative ? "alternative default " : "default ";
  const std::string prefix = alternative ? "alternative" : "default";
  listener.step("when its setter " + shownValue(item.setter) + " got the " + what + quoted(item, value) + " of " +
                shownValue(item.rootId));
  bool accepted = false;
  std::string reason;
  if (!guarded(item.rootId, "its setter " + shownValue(item.setter), "setter-throws",
               [&] { accepted = setter->setValue(value, item.indexValue, reason); }))
    return false;
  if (!isRefused(accepted, reason))
    return true;
  find(item.rootId, prefix + "-refused",
       "its setter " + shownValue(item.setter) + " refuses the " + what + quoted(item, value) + because(reason));
  return false;
}

void ServiceTrial::compare(const MapItem& item, Kind kind)
{
  ManagedItemGetter* getter = running->manager().getter(item.getter);
  if (getter == nullptr || running->manager().setter(item.setter) == nullptr)
    return;
  const bool alternative = kind == Kind::alternative && !item.alternativeDefault.empty();
  const std::string& value = alternative ? item.alternativeDefault : item.defaultValue;
  listener.step("when its getter " + shownValue(item.getter) + " was asked for " + shownValue(item.rootId));
  std::string read;
  if (!guarded(item.rootId, "its getter " + shownValue(item.getter), "getter-throws",
               [&] { read = getter->getValue(item.indexValue); }) ||
      read == value)
    return;
  find(item.rootId, alternative ? "alternative-differs" : "default-differs",
       "its getter " + shownValue(item.getter) + " answers " + quoted(item, read) + " after the " +
           (alternative ? "alternative default " : "default ") + quoted(item, value));
}

bool ServiceTrial::judge(const std::string& group, const MapItem& first, Kind kind)
{
  listener.step("when the validator was asked about the group " + shown(group));
  bool accepted = false;
  std::string reason;
  if (!guarded(first.rootId, "the validator", "validator-throws",
               [&] { accepted = running->validator()->validateGroup(reason, group); }))
    return false;
  const bool alternative = kind == Kind::alternative;
  if (!accepted)
    find(first.rootId, alternative ? "group-alternative-refused" : "group-default-refused",
         "the validator refuses the " + std::string(alternative ? "alternative defaults" : "defaults") +
             " of its group " + shown(group) + because(reason));
  return accepted;
}

void ServiceTrial::compareValidItems(const std::string& group, const Members& members)
{
  std::vector<std::pair<std::string, std::string>> listed;
  const std::string first = members.front()->rootId;
  if (!guarded(first, "the validator", "validator-throws",
               [&] { listed = running->validator()->getValidGroupItems(group); }))
    return;
  const auto isMember = [&](const std::string& rootId)
  { return std::any_of(members.begin(), members.end(), [&](const MapItem* each) { return each->rootId == rootId; }); };
  std::set<std::string> names;
  for (const auto& [rootId, value] : listed)
  {
    names.insert(rootId);
    if (!isMember(rootId))
      find(first, "group-item-unknown",
           "the validator lists " + shownValue(rootId) + ", which is no item of the group " + shown(group));
  }
  for (const MapItem* member : members)
  {
    if (names.count(member->rootId) == 0 && running->manager().hasSetter(member->setter))
      find(member->rootId, "group-item-missing",
           "the validator accepts the group " + shown(group) +
               " and does not list this item, so it would not be written");
  }
}

std::string ServiceTrial::quoted(const MapItem& item, const std::string& value) const
{
  return masks.value(item, value);
}

void ServiceTrial::find(const std::string& rootId, const std::string& rule, const std::string& text)
{
  listener.found({rootId, rule, text});
}

bool ServiceTrial::guarded(const std::string& rootId, const std::string& what, const std::string& rule,
                           const std::function<void()>& call)
{
  std::string thrown = "something that is no std::exception";
  try
  {
    call();
    return true;
  }
  catch (const std::exception& error)
  {
    thrown = shown(error.what());
  }
  catch (...)
  {
  }
  find(rootId, rule, what + " throws: " + thrown);
  return false;
}

} // namespace cli
