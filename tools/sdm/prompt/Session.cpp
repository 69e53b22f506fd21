// Asks service and database for what a command wants to show.
#include "Session.h"

#include <ManageableData.h>

#include <algorithm>
#include <utility>

#include "base/Shown.h"
#include "base/Suggestion.h"
#include "host/Faults.h"
#include "host/KeyFile.h"

namespace cli
{

Session::Session(RunningDevice& runningDevice, const SessionOutput& output)
    : running(runningDevice),
      out(output.answers),
      remarks(output.remarks),
      style(output.answerStyle),
      remarkStyle(output.remarkStyle),
      quiet(output.quiet),
      columns(output.columns)
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

std::optional<HistoryEvent> Session::givenBy(const MapItem& item) const
{
  const MapItem* first = itemAt(item.setter, item.indexValue);
  return running.history().live(first == nullptr ? item.rootId : first->rootId);
}

std::string Session::origin(const MapItem& item) const
{
  const auto live = givenBy(item);
  if (live)
    return live->origin == origin::alternative ? "alternative" : live->origin;
  return item.isLocal() ? "built in" : "service";
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
  for (const DatabaseFailure& failure : running.summary().platform.failed(false))
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

void Session::forgetRefusals()
{
  refusals.clear();
  refusedGroups.clear();
}

Outcome Session::refuse(const std::string& why)
{
  anyRefused = true;
  remarks << remarkStyle.bad("refused:") << " " << why << "\n";
  return Outcome::refused;
}

void Session::tellFailures(const PlatformReport& report)
{
  for (const DatabaseFailure& failure : report.failures)
    refuse((failure.update ? "the database did not take a change of schema " : "the database could not read schema ") +
           shown(failure.schema) + ": " + failure.reason);
  if (report.recordsLost != 0)
    refuse("the security log could not be written: " + report.recordTrouble);
}

bool Session::takeRefused()
{
  return std::exchange(anyRefused, false);
}

const MapItem* Session::refusedItem(const SetterRefusal& refusal) const
{
  return itemAt(refusal.setter, refusal.row);
}

const MapItem* Session::itemAt(const std::string& setter, const std::string& row) const
{
  const auto& items = running.items().items();
  const auto found = std::find_if(items.begin(), items.end(),
                                  [&](const MapItem& item) { return item.setter == setter && item.indexValue == row; });
  return found == items.end() ? nullptr : &*found;
}

void Session::printRefusals(const CallReport& report)
{
  noteRefusals(report);
  anyRefused = anyRefused || !report.refusals.empty() || !report.groupRefusals.empty();
  for (const SetterRefusal& refusal : report.refusals)
  {
    const MapItem* item = refusedItem(refusal);
    remarks << "  " << remarkStyle.bad("refused") << " "
            << (item != nullptr ? shown(item->rootId) : shown(refusal.setter)) << ": " << shown(refusal.reason) << "\n";
  }
  for (const GroupRefusal& refusal : report.groupRefusals)
    remarks << "  " << remarkStyle.bad("refused") << " group " << shown(refusal.group) << ": " << shown(refusal.reason)
            << "\n";
}

} // namespace cli
