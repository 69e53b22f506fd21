// Listens to the end of each exchange and keeps what a start has to report.
#include "PlatformWatch.h"

#include <algorithm>
#include <iterator>

#include "base/Shown.h"
#include "map/TrafficText.h"

namespace cli
{

ExchangeOutcome outcomeOf(const host::Exchange& exchange)
{
  ExchangeOutcome outcome = {requestedSchema(exchange.request), messageKind(exchange.request) == "update_request", ""};
  const std::string expected = outcome.update ? "update_response" : "read_response";
  if (!exchange.failure.empty())
    outcome.failure = shown(exchange.failure);
  else if (messageKind(exchange.reply) != expected)
    outcome.failure = replyError(exchange.reply);
  return outcome;
}

std::vector<DatabaseFailure> PlatformReport::failed(bool updates) const
{
  std::vector<DatabaseFailure> found;
  std::copy_if(failures.begin(), failures.end(), std::back_inserter(found),
               [&](const DatabaseFailure& failure) { return failure.update == updates; });
  return found;
}

PlatformWatch::PlatformWatch(const ItemTable& items)
{
  for (const MapItem& item : items.items())
  {
    if (item.isLocal())
      local.emplace(item.setter, item.indexValue);
  }
}

PlatformReport PlatformWatch::take()
{
  const std::lock_guard<std::mutex> hold(mutex);
  asked = false;
  known.clear();
  return std::exchange(report, PlatformReport());
}

void PlatformWatch::setterEnded(const SetterCall& call)
{
  const std::lock_guard<std::mutex> hold(mutex);
  if (asked && local.count({call.setter, call.row}) == 0)
    ++report.imported;
}

void PlatformWatch::serviceSought(const std::string& interfaceName, bool found)
{
  const std::lock_guard<std::mutex> hold(mutex);
  if (interfaceName == "DataAccessServiceIfc")
    report.noDatabase = !found;
  if (interfaceName == "LocalMgmtIfc")
    report.noStore = !found;
}

void PlatformWatch::exchangeEnded(const host::Exchange& exchange)
{
  ExchangeOutcome outcome = outcomeOf(exchange);
  const std::lock_guard<std::mutex> hold(mutex);
  asked = true;
  if (outcome.failure.empty())
    report.updatesTaken += outcome.update ? 1 : 0;
  else if (known.emplace(outcome.schema, outcome.update).second)
    report.failures.push_back({outcome.schema, outcome.update, outcome.failure});
}

void PlatformWatch::storeEnded(const StoreCall& call)
{
  const std::lock_guard<std::mutex> hold(mutex);
  if (call.operation == "checkData")
  {
    report.objection = call.objection;
    report.checked = call.names.size();
  }
  if (call.operation == "publishData")
    report.publishRefused = !call.answer.value_or(false);
}

void PlatformWatch::recordEnded(const RecordCall& call)
{
  const std::lock_guard<std::mutex> hold(mutex);
  ++report.records;
  if (!call.thrown)
    return;
  if (report.recordsLost++ == 0)
    report.recordTrouble = shown(*call.thrown);
}

} // namespace cli
