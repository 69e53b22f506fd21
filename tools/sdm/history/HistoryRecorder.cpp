// Collects what setters were told during an operation and writes it when the operation is over.
#include "HistoryRecorder.h"

#include <ManageableData.h>
#include <RejectReasonsStrings.h>

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "host/RejectReasons.h"

namespace cli
{
namespace
{

/// Until its group is judged.
constexpr const char* undecided = "";

bool holds(const std::string& text, const std::string& part)
{
  return text.find(part) != std::string::npos;
}

} // namespace

HistoryRecorder::HistoryRecorder(History& itsHistory, const ItemTable& items, const Masking& masking,
                                 std::uint32_t itsInterfaces)
    : history(itsHistory), table(items), masks(masking), interfaces(itsInterfaces), run(historyTime())
{
  for (const MapItem& item : table.items())
    places.emplace(std::make_pair(item.setter, item.indexValue), &item);
}

HistoryRecorder::Source HistoryRecorder::sourceOf(const std::string& operation)
{
  static const std::map<std::string, Source> sources = {{"setData", Source::set},
                                                        {"setDefaultUserData", Source::reset},
                                                        {"reloadUserData", Source::reload},
                                                        {"manageableDataChanged", Source::changed}};
  const auto found = sources.find(operation);
  return found == sources.end() ? Source::stored : found->second;
}

void HistoryRecorder::operationBegins(const OperationCall& call)
{
  if (call.housekeeping)
    return;
  const std::lock_guard<std::mutex> hold(mutex);
  Work work;
  work.operation = call.name;
  work.source = sourceOf(call.name);
  works[std::this_thread::get_id()].push_back(std::move(work));
}

void HistoryRecorder::operationEnded(const OperationCall& call, const OperationAnswer& /*answer*/)
{
  if (call.housekeeping)
    return;
  const std::lock_guard<std::mutex> hold(mutex);
  const auto found = works.find(std::this_thread::get_id());
  Work work = std::move(found->second.back());
  found->second.pop_back();
  if (found->second.empty())
    works.erase(found);
  if (work.source == Source::set)
    noteRejected(work, *call.data);
  finish(work);
}

HistoryRecorder::Work* HistoryRecorder::workOfThisThread()
{
  const auto found = works.find(std::this_thread::get_id());
  return found == works.end() ? nullptr : &found->second.back();
}

void HistoryRecorder::serviceSought(const std::string& interfaceName, bool found)
{
  const std::lock_guard<std::mutex> hold(mutex);
  if (Work* work = workOfThisThread(); work != nullptr && interfaceName == "DataAccessServiceIfc")
    work->noDatabase = !found;
}

void HistoryRecorder::exchangeEnded(const host::Exchange& exchange)
{
  const std::lock_guard<std::mutex> hold(mutex);
  Work* work = workOfThisThread();
  if (work == nullptr)
    return;
  if (work->lastExchange == 0)
    work->requestsBefore = exchange.number - 1;
  work->lastExchange = exchange.number;
  if (work->source != Source::stored)
    work->exchanges.push_back({exchange.number, exchange.request, outcomeOf(exchange)});
}

void HistoryRecorder::setterEnded(const SetterCall& call)
{
  const std::lock_guard<std::mutex> hold(mutex);
  const auto place = places.find({call.setter, call.row});
  Work* const current = workOfThisThread();
  if (place == places.end() || current == nullptr)
    return;
  const MapItem& item = *place->second;
  Work& work = *current;
  // The local store answers with an empty text for what it does not hold.
  if (item.isLocal() && work.source == Source::stored && call.value.empty())
    return;
  if (call.thrown)
    note(work, item, call.value, outcome::refused, "the setter threw: " + *call.thrown);
  else if (!call.accepted && beginsWith(call.reason, RejectReasonsStrings::not_changed))
    note(work, item, call.value, outcome::notTakenAgain, "");
  else if (!call.accepted)
    note(work, item, call.value, outcome::refused, call.reason);
  else if (!item.group.empty() && work.source != Source::changed)
    note(work, item, call.value, undecided, "");
  else
    note(work, item, call.value,
         beginsWith(call.reason, RejectReasonsStrings::unchanged_data) ? outcome::unchanged : outcome::taken, "");
}

void HistoryRecorder::note(Work& work, const MapItem& item, const std::string& value, const std::string& outcome,
                           const std::string& reason) const
{
  HistoryEvent event;
  event.time = historyTime();
  event.run = run;
  event.rootId = item.rootId;
  event.origin = originOf(work, item);
  event.outcome = outcome;
  event.value = masks.isSecret(item) ? Masking::mask : value;
  // A reason may repeat the value, and this stays on the disk.
  const bool tells = masks.isSecret(item) && !value.empty() && holds(reason, value);
  event.reason = tells ? Masking::mask : reason;
  // What comes out of a reply, or follows a request of its own, belongs to the last request there was.
  if (event.origin == origin::database || event.origin == origin::reset)
    event.request = work.lastExchange;
  work.pending.push_back({event, &item});
}

const char* HistoryRecorder::originOf(const Work& work, const MapItem& item) const
{
  switch (work.source)
  {
  case Source::set:
    return origin::set;
  case Source::reset:
    return origin::reset;
  case Source::reload:
    return origin::reload;
  case Source::changed:
    return origin::changed;
  case Source::stored:
    break;
  }
  if (item.isLocal())
    return origin::localStore;
  // A start gives the defaults first, and then asks for the stored values.
  if (work.lastExchange != 0)
    return origin::database;
  return takesAlternative(item, interfaces) ? origin::alternative : origin::byDefault;
}

void HistoryRecorder::validatorEnded(const ValidatorCall& call)
{
  const std::lock_guard<std::mutex> hold(mutex);
  Work* work = workOfThisThread();
  if (call.operation != "validateGroup" || !call.accepted || work == nullptr)
    return;
  for (Pending& each : work->pending)
  {
    if (each.item->group != call.group || each.event.outcome != undecided)
      continue;
    each.event.outcome = *call.accepted ? outcome::taken : outcome::refused;
    if (!*call.accepted)
      each.event.reason = beginsWith(call.reason, call.group + ": ") ? "group " + call.reason
                                                                     : "group " + call.group + ": " + call.reason;
  }
}

/// What the manager did not take without asking a setter.
void HistoryRecorder::noteRejected(Work& work, ManageableData& data) const
{
  for (const host::RejectReason& reject : host::rejectReasons(data))
  {
    const MapItem* item = table.find(reject.rootId);
    const bool known = std::any_of(work.pending.begin(), work.pending.end(),
                                   [&](const Pending& each) { return each.event.rootId == reject.rootId; });
    std::string value;
    data.interogate(reject.rootId, reject.rootId, value);
    if (item != nullptr && !known)
      note(work, *item, value, outcome::refused, reject.reason);
  }
}

/// The request that carried the value, and what became of it.
void HistoryRecorder::findRequest(const Work& work, Pending& each)
{
  HistoryEvent& event = each.event;
  const std::uint64_t given = event.request;
  for (const HeardExchange& exchange : work.exchanges)
  {
    const bool carries = given != 0 ? exchange.number == given
                                    : event.isLive() && exchange.outcome.schema == each.item->schema &&
                                          holds(exchange.request, each.item->column);
    if (!carries)
      continue;
    if (event.request == 0)
      event.request = exchange.number;
    if (exchange.outcome.update && !exchange.outcome.failure.empty())
      event.reason = "the database did not take it: " + exchange.outcome.failure;
  }
  if (work.noDatabase && event.isLive() && event.request == 0)
    event.reason = "the database was not found";
}

void HistoryRecorder::finish(Work& work)
{
  const bool asks = work.source != Source::stored && work.source != Source::changed;
  std::vector<HistoryEvent> events;
  for (Pending& each : work.pending)
  {
    if (each.event.outcome == undecided)
      each.event.outcome = outcome::heldBack;
    if (asks)
      findRequest(work, each);
    events.push_back(std::move(each.event));
  }
  if (work.operation == "initialise" || work.operation == "initialiseWithoutSettingDefaultData")
    history.addStart(std::move(events), {0, "", run, work.requestsBefore, false, ""});
  else
    history.add(events);
}

} // namespace cli
