// Commands that change values: in one request of the management agent, or in the local store.
#include <ManageableData.h>
#include <RejectReasonsStrings.h>

#include <algorithm>
#include <exception>
#include <set>

#include "CommandFunctions.h"
#include "base/Shown.h"
#include "base/Suggestion.h"
#include "base/Text.h"
#include "host/RejectReasons.h"

namespace cli
{
namespace
{

/// One `set`: the request, and what came back.
class SetRequest
{
public:
  SetRequest(Session& itsSession, const Arguments& arguments) : session(itsSession)
  {
    for (std::size_t i = 0; i + 1 < arguments.size(); i += 2)
      data.populate(arguments[i], arguments[i], arguments[i + 1]);
    data.getRootIds(rootIds);
  }

  Outcome carryOut()
  {
    session.running.service().takeReport();
    session.running.takeOutcomes();
    const bool success = send();
    calls = session.running.service().takeReport();
    platform = session.running.takeOutcomes();
    if (!failure.empty() && platform.updatesTaken == 0 && platform.failed(true).empty() && platform.recordsLost == 0)
      return session.refuse("the request failed before it reached the database: " + failure);
    for (const std::string& rootId : rootIds)
      report(rootId);
    for (const host::RejectReason& reject : host::rejectReasons(data))
    {
      // An empty root id alone is one that was asked for.
      if (reject.rootId.empty() && reject.name == "/")
        session.refuse("group " + shown(reject.reason));
    }
    reportDatabase();
    reportSecurityLog();
    if (!failure.empty() && platform.failed(true).empty() && platform.recordsLost == 0)
      session.refuse("the request ended early: " + failure);
    return success && !heldBack ? Outcome::done : Outcome::refused;
  }

private:
  /// What the platform throws ends the request somewhere in its middle, and what was done until then stays done.
  bool send()
  {
    try
    {
      return session.running.service().set(data);
    }
    catch (const std::exception& error)
    {
      failure = shown(error.what());
      return false;
    }
  }

  std::string reasonFor(const std::string& rootId) const
  {
    for (const host::RejectReason& reject : host::rejectReasons(data))
    {
      if (reject.rootId == rootId && reject.name == rootId)
        return reject.reason;
    }
    return "";
  }

  void report(const std::string& rootId)
  {
    const MapItem* item = session.running.items().find(rootId);
    const std::string reason = reasonFor(rootId);
    const std::string name = shownValue(rootId);
    std::string value;
    data.interogate(rootId, rootId, value);
    if (item == nullptr || item->isLocal())
      session.refuse(name + ": " + shown(reason) + hint(rootId, item));
    else if (beginsWith(reason, RejectReasonsStrings::not_changed))
      session.out << name << " " << session.style.notable("not taken again") << ": it is so already, and taking it "
                  << "would interrupt the service; the database keeps it\n";
    else if (!reason.empty() && !beginsWith(reason, RejectReasonsStrings::unchanged_data))
      session.refuse(name + ": " + shown(reason));
    else if (!isLive(*item))
      holdBack(*item);
    else
      accepted(*item, value, !reason.empty());
  }

  void accepted(const MapItem& item, const std::string& value, bool unchanged)
  {
    takenAny = true;
    session.out << shown(item.rootId) << " = " << session.running.masking().value(item, value)
                << (unchanged ? "  (unchanged)" : "") << "\n";
    const bool given = item.group.empty() || calls.groupItems.count(item.rootId) != 0;
    const bool stored =
        session.isStored(item) ? !session.differsFromDatabase(item, value) : value == session.running.defaultOf(item);
    if (!given && !stored)
      session.refuse(shown(item.rootId) +
                     ": the validator did not give it to be stored, so it is gone after a restart");
  }

  void holdBack(const MapItem& item)
  {
    heldBack = true;
    session.remarks << shown(item.rootId) << " " << session.remarkStyle.notable("keeps its value")
                    << ", because its group was not accepted\n";
  }

  /// Members of a group are live only when the group was accepted.
  bool isLive(const MapItem& item) const
  {
    return item.group.empty() || calls.groupsTaken.count(item.group) != 0;
  }

  std::string hint(const std::string& rootId, const MapItem* item) const
  {
    if (item != nullptr)
      return "; it is on the device only, use: changed " + shown(rootId) + " VALUE";
    const std::string meant = didYouMean(rootId, session.running.items().rootIds());
    return meant.empty() ? "" : "; " + meant;
  }

  void reportDatabase()
  {
    if (platform.noDatabase && takenAny)
      session.refuse("the database was not found, so the change is gone after a restart");
    const auto untaken = platform.failed(true);
    for (const DatabaseFailure& each : untaken)
    {
      const bool alone = untaken.size() + platform.updatesTaken == 1;
      session.refuse("the database did not take the change, so it is gone after a restart: " + each.reason +
                     (alone ? "" : " (schema " + shown(each.schema) + ")"));
    }
    PlatformReport reads = platform;
    reads.failures = platform.failed(false);
    reads.recordsLost = 0;
    session.tellFailures(reads);
  }

  /// Records come after the changes, so what the database took by then it keeps.
  void reportSecurityLog()
  {
    if (platform.recordsLost == 0)
      return;
    session.refuse("the security log could not be written: " + platform.recordTrouble);
    session.remarks << "  records missing: " << platform.recordsLost << " of " << platform.records << "; "
                    << (platform.updatesTaken != 0 ? "what the database took stays there without them\n"
                                                   : "the database took nothing\n");
  }

  Session& session;
  ManageableData data;
  std::vector<std::string> rootIds;
  bool heldBack = false;
  bool takenAny = false;
  /// What the platform threw, made safe to print.
  std::string failure;
  CallReport calls;
  PlatformReport platform;
};

/// Who forgot the quotes around a secret has its second word where a root id belongs, and root ids are logged.
bool mayHoldPieceOfSecret(const Session& session, const Arguments& arguments)
{
  bool withSecret = false;
  bool allKnown = true;
  for (std::size_t i = 0; i < arguments.size(); i += 2)
  {
    withSecret = withSecret || session.running.masking().isSecret(arguments[i]);
    allKnown = allKnown && session.running.items().find(arguments[i]) != nullptr;
  }
  return withSecret && !allKnown;
}

} // namespace

Outcome setItems(Session& session, const Arguments& arguments)
{
  if (arguments.size() % 2 != 0)
    return session.refuse("usage: set ID VALUE [ID VALUE...]; a value with blanks stands in \"quotes\"");
  if (mayHoldPieceOfSecret(session, arguments))
    return session.refuse("a root id is not known; a secret with blanks stands in \"quotes\". Nothing was sent");
  std::set<std::string> named;
  for (std::size_t i = 0; i < arguments.size(); i += 2)
  {
    if (!named.insert(arguments[i]).second)
      return session.refuse("one item is named twice; a request has one value for each");
  }
  return SetRequest(session, arguments).carryOut();
}

Outcome changeLocally(Session& session, const Arguments& arguments)
{
  const MapItem* item = session.known(arguments[0]);
  if (item == nullptr)
    return Outcome::refused;
  if (!item->isLocal())
    return session.refuse(shown(item->rootId) + " is in the database; use: set " + shown(item->rootId) + " VALUE");
  session.running.service().takeReport();
  session.running.device().store().change(item->rootId, arguments[1]);
  const CallReport report = session.running.service().takeReport();
  session.out << shown(item->rootId) << " = " << session.running.masking().value(*item, arguments[1])
              << " in the local store\n";
  if (!report.refusals.empty())
    return session.refuse("the service goes on with what it has: " + shown(report.refusals.front().reason));
  if (report.setterCalls == 0)
    session.remarks << "  nobody in the service takes it\n";
  return Outcome::done;
}

} // namespace cli
