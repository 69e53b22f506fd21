// Counts first, then whatever needs attention.
#include "StartReport.h"

#include <algorithm>
#include <iomanip>
#include <set>

#include "base/Shown.h"

namespace cli
{
namespace
{

std::size_t schemaCount(const std::vector<MapItem>& items)
{
  std::set<std::string> schemas;
  for (const MapItem& item : items)
  {
    if (!item.isLocal())
      schemas.insert(item.schema);
  }
  return schemas.size();
}

void printCounts(Session& session, const StartSummary& summary)
{
  const ItemTable& table = session.running.items();
  const auto& items = table.rootIds();
  const auto local = std::count_if(items.begin(), items.end(),
                                   [&](const std::string& rootId) { return table.find(rootId)->isLocal(); });
  const std::size_t values = summary.calls.refused - summary.calls.repeated;
  session.remarks << "  items     " << items.size() << ", " << local << " of them on the device only\n"
                  << "  schemas   " << schemaCount(table.items()) << "\n"
                  << "  imported  " << summary.imported << " from the database, " << summary.localValues
                  << " from the local store\n"
                  << "  refused   " << values << "\n"
                  << "  groups    " << summary.calls.groupRefusals.size() << " failed, " << summary.calls.groupsJudged
                  << " judged\n"
                  << "  time      " << std::fixed << std::setprecision(1) << summary.duration.count() << " ms\n";
}

void printFailures(Session& session, const PlatformReport& platform)
{
  if (platform.noDatabase)
    session.remarks << "  " << session.remarkStyle.bad("failed")
                    << "    the database was not found, so nothing was imported\n";
  const auto failures = platform.failed(false);
  if (failures.empty())
    return;
  session.remarks << "  " << session.remarkStyle.bad("failed") << "    " << counted(failures.size(), "schema")
                  << ", whose items did not get what is stored\n";
  for (const DatabaseFailure& failure : failures)
    session.remarks << "  " << session.remarkStyle.bad("failed") << " " << shown(failure.schema) << ": "
                    << failure.reason << "\n";
}

void printUndecryptable(Session& session)
{
  std::size_t count = 0;
  std::string list;
  for (const std::string& rootId : session.running.items().rootIds())
  {
    if (!session.running.isUndecryptable(*session.running.items().find(rootId)))
      continue;
    ++count;
    list += (list.empty() ? "" : ", ") + shown(rootId);
  }
  if (count != 0)
    session.remarks << "  " << session.remarkStyle.bad("undecryptable") << " " << count << ": " << list
                    << "; is das.key the one of this database?\n";
}

void printUnserved(Session& session)
{
  const RunningDevice& running = session.running;
  const auto& items = running.items().items();
  const auto unserved = std::count_if(items.begin(), items.end(),
                                      [&](const MapItem& item) {
                                        return (!item.setter.empty() && !running.hasSetter(item)) ||
                                               (!item.getter.empty() && !running.hasGetter(item));
                                      });
  if (unserved != 0)
    session.remarks << "  "
                    << session.remarkStyle.notable(counted(static_cast<std::size_t>(unserved), "item") +
                                                   (unserved == 1 ? " names" : " name") +
                                                   " callbacks that the service does not have")
                    << "\n";
}

} // namespace

std::string encryptionWarning(const RunningDevice& running)
{
  const UnclearEncryption& unclear = running.items().unclearEncryption();
  if (unclear.lines == 0)
    return "";
  const std::string count = unclear.lines == 1 ? "" : " (" + std::to_string(unclear.lines) + " such lines)";
  return "the item map " + shown(running.mapFile().string()) + ", line " + std::to_string(unclear.firstLine) + count +
         ": column 12 is neither empty nor true" + (unclear.carriageReturn ? ", because the line ends in CR LF" : "") +
         "; the value is stored unencrypted";
}

bool failed(const StartSummary& summary)
{
  return summary.platform.noDatabase || !summary.platform.failures.empty() || !summary.registered;
}

void printStart(Session& session, const StartSummary& summary, const std::string& headline)
{
  if (!session.quiet)
  {
    session.remarks << session.remarkStyle.strong(headline) << "\n";
    printCounts(session, summary);
    if (const std::string& change = session.running.mapChange(); !change.empty())
      session.remarks << "  map       " << shown(change) << "\n";
  }
  for (const std::string& notice : session.running.notices())
    session.remarks << "  " << session.remarkStyle.bad("attention") << " " << shown(notice) << "\n";
  printFailures(session, summary.platform);
  if (summary.newKey)
    session.remarks << "  "
                    << session.remarkStyle.bad(
                           "das.key was missing beside das.db, so a new one was made; values encrypted with "
                           "the old one need that back")
                    << "\n";
  printUndecryptable(session);
  session.printRefusals(summary.calls);
  printUnserved(session);
  if (!summary.registered)
    session.remarks << session.remarkStyle.bad("the local store did not register the service") << "\n";
}

} // namespace cli
