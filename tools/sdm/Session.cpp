#include "Session.h"

#include <ManageableData.h>

#include <algorithm>
#include <iomanip>
#include <set>

#include "Shown.h"
#include "Suggestion.h"
#include "host/DasCrypt.h"

namespace cli
{

Session::Session(RunningDevice& runningDevice, std::ostream& output, const Style& itsStyle)
    : running(runningDevice), out(output), style(itsStyle)
{
}

const MapItem* Session::known(const std::string& rootId)
{
  const MapItem* item = running.items().find(rootId);
  if (item == nullptr)
  {
    const std::string hint = didYouMean(rootId, running.items().rootIds());
    refuse("there is no item " + shownValue(rootId) + (hint.empty() ? "; `list` shows all" : "; " + hint));
  }
  return item;
}

std::map<std::string, std::string> Session::values(const std::vector<const MapItem*>& items, bool withSecrets)
{
  std::map<std::string, std::string> found;
  ManageableData data;
  for (const MapItem* item : items)
  {
    if (!withSecrets && running.masking().isSecret(*item))
      continue;
    if (!item->isLocal())
      data.addRootId(item->rootId, nullptr);
    else if (ManagedDataItem* managed = running.service().manager().getItem(item->rootId);
             managed != nullptr && managed->getter != nullptr)
      found[item->rootId] = managed->getter->getValue(managed->dasIndexValue);
  }
  running.service().get(data);
  for (const MapItem* item : items)
  {
    std::string value;
    if (!item->isLocal() && data.interogate(item->rootId, item->rootId, value))
      found[item->rootId] = value;
  }
  return found;
}

std::optional<std::string> Session::stored(const MapItem& item)
{
  auto cell = running.device().das().storedCell(item.schema, item.column, item.indexName, item.indexValue);
  std::string plain;
  if (cell && item.encrypted && DasCrypt::fromEncryptedText(*cell, plain))
    cell = plain;
  return cell;
}

std::string Session::origin(const MapItem& item, const std::string& value)
{
  const auto noted = origins.find(item.rootId);
  if (noted != origins.end())
    return noted->second;
  if (item.isLocal())
    return running.device().store().value(item.rootId).value_or("").empty() ? "built in" : "local store";
  if (stored(item) && !differsFromDatabase(item, value))
    return "database";
  if (!running.masking().isSecret(item) && value != running.defaultOf(item))
    return "service";
  return running.usesAlternative(item) ? "alternative" : "default";
}

bool Session::differsFromDatabase(const MapItem& item, const std::string& value)
{
  if (item.isLocal() || running.masking().isSecret(item))
    return false;
  const auto cell = stored(item);
  return cell && *cell != value;
}

bool Session::isStored(const MapItem& item)
{
  return !item.isLocal() && stored(item).has_value();
}

void Session::noteOrigin(const std::string& rootId, const std::string& origin)
{
  origins[rootId] = origin;
}

void Session::forgetOrigins()
{
  origins.clear();
}

Outcome Session::refuse(const std::string& why)
{
  out << style.bad("refused:") << " " << why << "\n";
  return Outcome::refused;
}

const MapItem* Session::refusedItem(const commsservice::SetterRefusal& refusal) const
{
  const auto& items = running.items().items();
  const auto found = std::find_if(items.begin(), items.end(),
                                  [&](const MapItem& item)
                                  { return item.setter == "set" + refusal.setting && item.indexValue == refusal.row; });
  return found == items.end() ? nullptr : &*found;
}

void Session::printRefusals(const commsservice::CallReport& report)
{
  for (const commsservice::SetterRefusal& refusal : report.refusals)
  {
    const MapItem* item = refusedItem(refusal);
    out << "  " << style.bad("refused") << " " << (item != nullptr ? shown(item->rootId) : refusal.setting) << ": "
        << shown(refusal.reason) << "\n";
  }
  for (const commsservice::GroupRefusal& refusal : report.groupRefusals)
    out << "  " << style.bad("refused") << " group " << shown(refusal.group) << ": " << shown(refusal.reason) << "\n";
}

void printStart(Session& session, const StartSummary& summary, const std::string& headline)
{
  const auto& items = session.running.items().items();
  std::set<std::string> schemas;
  for (const MapItem& item : items)
  {
    if (!item.isLocal())
      schemas.insert(item.schema);
  }
  const auto local = std::count_if(items.begin(), items.end(), [](const MapItem& item) { return item.isLocal(); });
  const std::size_t values = summary.calls.refused - summary.calls.repeated;
  session.out << session.style.strong(headline) << "\n"
              << "  items     " << items.size() << ", " << local << " of them on the device only\n"
              << "  schemas   " << schemas.size() << "\n"
              << "  imported  " << summary.imported << " from the database, " << summary.localValues
              << " from the local store\n"
              << "  refused   " << values << "\n"
              << "  groups    " << summary.calls.groupRefusals.size() << " failed, " << summary.calls.groupsJudged
              << " judged\n"
              << "  time      " << std::fixed << std::setprecision(1) << summary.duration.count() << " ms\n";
  session.printRefusals(summary.calls);
  const auto unserved = std::count_if(items.begin(), items.end(),
                                      [&](const MapItem& item)
                                      {
                                        const RunningDevice& running = session.running;
                                        return (!item.setter.empty() && !running.hasSetter(item)) ||
                                               (!item.getter.empty() && !running.hasGetter(item));
                                      });
  if (unserved != 0)
    session.out << "  "
                << session.style.notable(std::to_string(unserved) +
                                         " items name callbacks that the service does not have")
                << "\n";
  if (!summary.registered)
    session.out << session.style.bad("the local store did not register the service") << "\n";
}

std::string settingOf(const MapItem& item)
{
  return item.setter.rfind("set", 0) == 0 ? item.setter.substr(3) : std::string();
}

} // namespace cli
