// Commands about user data and the device as a whole.
#include <algorithm>

#include "CommandFunctions.h"
#include "StartReport.h"
#include "base/Shown.h"

namespace cli
{
namespace
{

std::vector<const MapItem*> userData(const Session& session)
{
  std::vector<const MapItem*> items;
  for (const MapItem& item : session.running.items().items())
  {
    if (item.userData)
      items.push_back(&item);
  }
  return items;
}

/// Prints "id = now (was before)" for every value that is another one than before, and counts them.
std::size_t printChanges(Session& session, const std::vector<const MapItem*>& items,
                         const std::map<std::string, std::string>& before)
{
  std::size_t changes = 0;
  for (const auto& [rootId, now] : session.values(items))
  {
    const auto was = before.find(rootId);
    if (was == before.end() || was->second == now)
      continue;
    ++changes;
    session.out << "  " << shown(rootId) << " = " << shownValue(now) << " (was " << shownValue(was->second) << ")\n";
  }
  return changes;
}

bool isLocked(Session& session, const std::string& rootId)
{
  const auto locked = session.running.device().store().lockedItems();
  return std::find(locked.begin(), locked.end(), rootId) != locked.end();
}

/// What kept the manager from a reset, in the order in which it asks; or that there was nothing to do.
Outcome tellWhyNotReset(Session& session, const PlatformReport& report, std::size_t items)
{
  if (report.noStore)
    return session.refuse("the local store did not take the reset: it was not found, so nothing was reset");
  if (isLocked(session, report.objection))
    return session.refuse(shown(report.objection) + " is locked, so nothing was reset; `unlock " +
                          shown(report.objection) + "` allows it");
  if (!report.objection.empty())
    return session.refuse("the local store did not take the reset");
  if (report.noDatabase)
    return session.refuse("the database was not found, so nothing was reset");
  if (report.publishRefused)
    return session.refuse("the local store did not take the reset, which database and service have taken");
  session.out << "nothing to reset: "
              << (items == 1 ? "the one user data item is at its default"
                             : "all " + counted(items, "user data item") + " are at their defaults")
              << "\n";
  return Outcome::done;
}

std::map<std::string, std::string> storedLocally(Session& session)
{
  std::map<std::string, std::string> values;
  for (const std::string& rootId : session.running.items().rootIds())
  {
    if (const auto value = session.running.device().store().value(rootId))
      values[rootId] = *value;
  }
  return values;
}

} // namespace

Outcome resetUserData(Session& session, const Arguments&)
{
  RunningDevice& running = session.running;
  const auto items = userData(session);
  const auto before = session.values(items);
  session.tellFailures(running.takeOutcomes());
  running.service().takeReport();
  const bool success = running.service().resetUserData();
  const CallReport calls = running.service().takeReport();
  const PlatformReport report = running.takeOutcomes();
  for (const DatabaseFailure& failure : report.failed(true))
    session.refuse("the database did not take a default, so its own value is back after a restart: " + failure.reason);
  const std::size_t changes = printChanges(session, items, before);
  session.printRefusals(calls);
  if (!success)
    return tellWhyNotReset(session, report, items.size());
  session.out << changes << " of " << counted(items.size(), "user data item") << (changes == 1 ? " is" : " are")
              << " back at " << (changes == 1 ? "its default\n" : "their defaults\n");
  return Outcome::done;
}

Outcome reloadUserData(Session& session, const Arguments&)
{
  const auto items = userData(session);
  const auto before = session.values(items);
  session.running.service().takeReport();
  session.running.service().reloadUserData();
  CallReport report = session.running.service().takeReport();
  const PlatformReport platform = session.running.takeOutcomes();
  if (platform.noDatabase)
    return session.refuse("the database was not found, so nothing was read");
  session.tellFailures(platform);
  // What was never stored is read as an empty text, which those settings refuse: nothing to worry about.
  const std::size_t all = report.refusals.size();
  auto& refusals = report.refusals;
  refusals.erase(std::remove_if(refusals.begin(), refusals.end(),
                                [&](const SetterRefusal& refusal)
                                {
                                  const MapItem* item = session.refusedItem(refusal);
                                  return item != nullptr && !session.isStored(*item);
                                }),
                 refusals.end());
  const std::size_t changes = printChanges(session, items, before);
  session.out << counted(items.size(), "user data item") << " read again: " << changes << " changed, "
              << refusals.size() << " refused, " << all - refusals.size() << " not in the database\n";
  session.printRefusals(report);
  return report.refusals.empty() && report.groupRefusals.empty() ? Outcome::done : Outcome::refused;
}

Outcome restartService(Session& session, const Arguments&)
{
  const auto before = storedLocally(session);
  const StartSummary summary = session.running.restart();
  session.forgetRefusals();
  std::size_t published = 0;
  for (const auto& [rootId, value] : storedLocally(session))
  {
    const auto was = before.find(rootId);
    if (was == before.end() || was->second != value)
      ++published;
  }
  printStart(session, summary, "restarted");
  if (!session.quiet)
    session.remarks << "  published " << counted(published, "new value") << " in the local store\n";
  const PlatformReport& platform = summary.platform;
  if (platform.noStore || platform.publishRefused)
    return session.refuse(std::string("the local store ") + (platform.noStore ? "was not found" : "refused") +
                          ", so it does not have what changed");
  return failed(summary) ? Outcome::refused : Outcome::done;
}

Outcome lockItem(Session& session, const Arguments& arguments)
{
  host::LocalMgmtStore& store = session.running.device().store();
  if (arguments.empty())
  {
    const auto locked = store.lockedItems();
    session.out << (locked.empty() ? "nothing is locked\n" : "");
    for (const std::string& rootId : locked)
      session.out << shown(rootId) << "\n";
    return Outcome::done;
  }
  const MapItem* item = session.known(arguments.front());
  if (item == nullptr)
    return Outcome::refused;
  store.lockItem(item->rootId);
  session.out << shown(item->rootId) << " is locked\n";
  if (!item->userData)
    session.remarks << "  it is no user data, so no reset asks for it\n";
  return Outcome::done;
}

Outcome unlockItem(Session& session, const Arguments& arguments)
{
  host::LocalMgmtStore& store = session.running.device().store();
  const auto locked = store.lockedItems();
  // A lock outlives the map, so its item may be one that the map does not have any more.
  if (std::find(locked.begin(), locked.end(), arguments.front()) == locked.end())
  {
    if (session.known(arguments.front()) == nullptr)
      return Outcome::refused;
    session.out << shown(arguments.front()) << " was not locked\n";
    return Outcome::done;
  }
  store.unlockItem(arguments.front());
  session.out << shown(arguments.front()) << " is unlocked\n";
  return Outcome::done;
}

} // namespace cli
