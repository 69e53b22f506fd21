// Commands that change values: in one request of the management agent, or in the local store.
#include <ManageableData.h>
#include <RejectReasonsStrings.h>

#include <algorithm>
#include <exception>
#include <set>

#include "CommandFunctions.h"
#include "Shown.h"
#include "Suggestion.h"
#include "TrafficText.h"
#include "host/ManageableData.h"

namespace cli
{
namespace
{

bool begins(const std::string& text, const std::string& with)
{
  return text.compare(0, with.size(), with) == 0;
}

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
    const std::uint64_t before = lastExchange();
    const bool success = send();
    if (!failure.empty() && lastExchange() == before)
      return session.refuse("the request failed before it reached the database: " + failure);
    for (const std::string& rootId : rootIds)
      report(rootId);
    for (const host::RejectReason& reject : host::rejectReasons(data))
    {
      // An empty root id alone is one that was asked for.
      if (reject.rootId.empty() && reject.name == "/")
        session.refuse("group " + shown(reject.reason));
    }
    reportDatabase(before);
    if (!success && takenAny && failure.empty() && lastExchange() == before)
      session.refuse("the database was not found, so the change is gone after a restart");
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

  std::uint64_t lastExchange() const
  {
    return session.running.lastExchange();
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
    else if (begins(reason, RejectReasonsStrings::not_changed))
      session.out << name << " " << session.style.notable("not taken again") << ": it is so already, and taking it "
                  << "would interrupt the service; the database keeps it\n";
    else if (!reason.empty() && !begins(reason, RejectReasonsStrings::unchanged_data))
      session.refuse(name + ": " + shown(reason));
    else if (!isLive(*item, value))
      holdBack(*item);
    else
      accepted(*item, value, !reason.empty());
  }

  void accepted(const MapItem& item, const std::string& value, bool unchanged)
  {
    takenAny = true;
    session.noteOrigin(item.rootId, "set");
    session.out << shown(item.rootId) << " = " << session.running.masking().value(item, value)
                << (unchanged ? "  (unchanged)" : "") << "\n";
  }

  void holdBack(const MapItem& item)
  {
    heldBack = true;
    session.out << shown(item.rootId) << " " << session.style.notable("keeps its value")
                << ", because its group was not accepted\n";
  }

  /// Members of a group are live only when the group was accepted.
  bool isLive(const MapItem& item, const std::string& value) const
  {
    return item.group.empty() || session.running.service().watch().taken(item.setter, item.indexValue) == value;
  }

  std::string hint(const std::string& rootId, const MapItem* item) const
  {
    if (item != nullptr)
      return "; it is on the device only, use: changed " + shown(rootId) + " VALUE";
    const std::string meant = didYouMean(rootId, session.running.items().rootIds());
    return meant.empty() ? "" : "; " + meant;
  }

  void reportDatabase(std::uint64_t before)
  {
    bool answered = true;
    for (const host::Exchange& exchange : session.running.device().traffic().exchanges())
    {
      if (exchange.number <= before || replyKind(exchange.reply) == "update_response")
        continue;
      answered = answered && exchange.failure.empty();
      session.refuse("the database did not take the change, so it is gone after a restart: " +
                     (exchange.failure.empty() ? replyError(exchange.reply) : shown(exchange.failure)));
    }
    // Records are written when all requests were sent, so it is no other service that failed.
    if (!failure.empty() && answered)
      session.refuse("the security log could not be written: " + failure);
  }

  Session& session;
  ManageableData data;
  std::vector<std::string> rootIds;
  bool heldBack = false;
  bool takenAny = false;
  /// What the platform threw, made safe to print.
  std::string failure;
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
  session.noteOrigin(item->rootId, "changed");
  if (!report.refusals.empty())
    return session.refuse("the service goes on with what it has: " + shown(report.refusals.front().reason));
  if (report.setterCalls == 0)
    session.out << "  nobody in the service takes it\n";
  return Outcome::done;
}

} // namespace cli
