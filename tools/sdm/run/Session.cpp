#include "Session.h"

#include <ManageableData.h>

#include <algorithm>

#include "Shown.h"
#include "Suggestion.h"
#include "host/DasCrypt.h"
#include "host/Faults.h"

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
  auto cell = running.storedCell(item);
  std::string plain;
  const host::WithoutFaults asItIs;
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
  if (stored(item) && !running.isUndecryptable(item) && !differsFromDatabase(item, value))
    return "database";
  if (!running.masking().isSecret(item) && value != running.defaultOf(item))
    return "service";
  return running.usesAlternative(item) ? "alternative" : "default";
}

bool Session::differsFromDatabase(const MapItem& item, const std::string& value)
{
  if (item.isLocal() || running.isUndecryptable(item))
    return false;
  const bool secret = running.masking().isSecret(item);
  if (secret && !running.hasSetter(item))
    return false;
  const auto cell = stored(item);
  return cell && *cell != (secret ? running.service().watch().taken(item.setter, item.indexValue) : value);
}

std::string Session::whyItDiffers(const MapItem& item) const
{
  for (const SchemaFailure& failure : running.summary().failures)
  {
    if (failure.schema == item.schema)
      return "the database holds another value, but the schema could not be read: " + failure.reason;
  }
  const bool refused =
      refusals.count(item.rootId) != 0 || (!item.group.empty() && refusedGroups.count(item.group) != 0);
  return std::string("the database holds another value") + (refused ? ", which the service refused" : "");
}

void Session::noteRefusals(const CallReport& report)
{
  for (const SetterRefusal& refusal : report.refusals)
  {
    if (const MapItem* item = refusedItem(refusal))
      refusals.insert(item->rootId);
  }
  for (const GroupRefusal& refusal : report.groupRefusals)
    refusedGroups.insert(refusal.group);
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
  refusals.clear();
  refusedGroups.clear();
}

Outcome Session::refuse(const std::string& why)
{
  out << style.bad("refused:") << " " << why << "\n";
  return Outcome::refused;
}

const MapItem* Session::refusedItem(const SetterRefusal& refusal) const
{
  const auto& items = running.items().items();
  const auto found = std::find_if(items.begin(), items.end(),
                                  [&](const MapItem& item)
                                  { return item.setter == refusal.setter && item.indexValue == refusal.row; });
  return found == items.end() ? nullptr : &*found;
}

void Session::printRefusals(const CallReport& report)
{
  noteRefusals(report);
  for (const SetterRefusal& refusal : report.refusals)
  {
    const MapItem* item = refusedItem(refusal);
    out << "  " << style.bad("refused") << " " << (item != nullptr ? shown(item->rootId) : shown(refusal.setter))
        << ": " << shown(refusal.reason) << "\n";
  }
  for (const GroupRefusal& refusal : report.groupRefusals)
    out << "  " << style.bad("refused") << " group " << shown(refusal.group) << ": " << shown(refusal.reason) << "\n";
}

} // namespace cli
