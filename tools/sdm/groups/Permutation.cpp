// One process and one copy of a started device for each order.
#include "Permutation.h"

#include <DasCrypt.h>
#include <ManageableData.h>

#include <exception>
#include <nlohmann/json.hpp>
#include <optional>

#include "base/OwnProcess.h"
#include "base/StartError.h"
#include "device/RunningDevice.h"
#include "host/RejectReasons.h"

namespace cli::groups
{
namespace
{

constexpr const char* crash = "crash";
const std::string live = " live";

/// A service that does not even start cannot be tried.
void throwCrash(const RequestOutcome& outcome)
{
  if (const auto found = outcome.find(crash); found != outcome.end())
    throw StartError("the service does not start: " + found->second);
}

RunSettings settingsFor(const std::filesystem::path& service, const std::filesystem::path& map,
                        const std::filesystem::path& folder)
{
  RunSettings settings;
  settings.service = service;
  settings.map = map;
  settings.device = folder;
  settings.logLevel = 0;
  settings.consoleLevel = 0;
  return settings;
}

std::optional<std::string> liveValue(RunningDevice& device, const MapItem& item)
{
  if (ManagedItemGetter* getter = device.service().manager().getter(item.getter))
    return getter->getValue(item.indexValue);
  return device.service().watch().taken(item.setter, item.indexValue);
}

void noteValues(RunningDevice& device, const MapItem& item, RequestOutcome& outcome)
{
  if (const auto value = liveValue(device, item))
    outcome[item.rootId + live] = *value;
  auto cell = device.storedCell(item);
  std::string plain;
  if (cell && item.encrypted && DasCrypt::fromEncryptedText(*cell, plain))
    cell = plain;
  if (cell)
    outcome[item.rootId + " stored"] = *cell;
}

void request(RunningDevice& device, ManageableData& data, RequestOutcome& outcome)
{
  device.takeOutcomes();
  try
  {
    outcome["result"] = device.service().set(data) ? "done" : "refused";
  }
  catch (const std::exception& error)
  {
    outcome["result"] = std::string("throws: ") + error.what();
  }
  // The manager's answer is that of its last schema.
  for (const DatabaseFailure& failure : device.takeOutcomes().failed(true))
  {
    if (outcome["result"] == "done")
      outcome["result"] = "refused";
    outcome["database " + failure.schema] = failure.reason;
  }
  for (const host::RejectReason& reject : host::rejectReasons(data))
    outcome[reject.rootId.empty() ? "group" : reject.rootId + " refused"] = reject.reason;
}

} // namespace

PermutationTrial::PermutationTrial(const std::filesystem::path& itsService, const std::filesystem::path& itsMap,
                                   const std::filesystem::path& itsScratch, std::chrono::seconds itsPatience,
                                   Progress& itsProgress)
    : service(itsService), map(itsMap), scratch(itsScratch), patience(itsPatience), progress(itsProgress)
{
  const auto start = [this]
  {
    const RunningDevice first(settingsFor(service, map, scratch / "first"));
    return RequestOutcome();
  };
  throwCrash(apart(start));
}

std::map<std::string, std::string> PermutationTrial::currentValues(const ItemTable& items) const
{
  const auto read = [&]
  {
    std::map<std::string, std::string> values;
    RunningDevice device(settingsFor(service, map, scratch / "first"));
    for (const MapItem& item : items.items())
    {
      const auto value = item.group.empty() ? std::nullopt : liveValue(device, item);
      if (value)
        values[item.rootId + live] = *value;
    }
    return values;
  };
  const auto told = apart(read);
  throwCrash(told);
  std::map<std::string, std::string> values;
  for (const auto& [subject, value] : told)
    values[subject.substr(0, subject.size() - live.size())] = value;
  return values;
}

RequestOutcome PermutationTrial::run(const GroupOfItems& group, const GroupChange& change,
                                     const std::vector<std::size_t>& order) const
{
  const std::filesystem::path folder = scratch / "trial";
  std::filesystem::remove_all(folder);
  std::filesystem::copy(scratch / "first", folder, std::filesystem::copy_options::recursive);
  const auto set = [&]
  {
    RunningDevice device(settingsFor(service, map, folder));
    ManageableData data;
    for (const std::size_t place : order)
      data.populate(group.members[place]->rootId, group.members[place]->rootId, change[place]);
    RequestOutcome outcome;
    request(device, data, outcome);
    for (const MapItem* member : group.members)
      noteValues(device, *member, outcome);
    return outcome;
  };
  return apart(set);
}

std::map<std::string, std::string>
PermutationTrial::apart(const std::function<std::map<std::string, std::string>()>& work) const
{
  using Json = nlohmann::json;
  // A form that takes values of any bytes.
  const auto packed = [&]
  {
    const auto bytes = Json::to_cbor(Json(work()));
    return std::string(bytes.begin(), bytes.end());
  };
  const WorkDone done = inOwnProcess(packed, patience, progress);
  if (!done.trouble.empty())
    return {{crash, done.trouble}};
  return Json::from_cbor(done.text).get<std::map<std::string, std::string>>();
}

} // namespace cli::groups
