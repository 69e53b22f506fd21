#include "groups/Permutation.h"

#include <DasCrypt.h>
#include <ManageableData.h>

#include <exception>
#include <optional>

#include "host/ManageableData.h"
#include "run/RunningDevice.h"

namespace cli
{
namespace
{

/// Leaves the working folder as it was, since a running device makes its own folder the one.
class SameWorkingFolder
{
public:
  SameWorkingFolder() : folder(std::filesystem::current_path())
  {
  }
  ~SameWorkingFolder()
  {
    std::error_code ignored;
    std::filesystem::current_path(folder, ignored);
  }
  SameWorkingFolder(const SameWorkingFolder&) = delete;
  SameWorkingFolder& operator=(const SameWorkingFolder&) = delete;

private:
  std::filesystem::path folder;
};

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
  if (const auto live = liveValue(device, item))
    outcome[item.rootId + " live"] = *live;
  auto cell = device.storedCell(item);
  std::string plain;
  if (cell && item.encrypted && DasCrypt::fromEncryptedText(*cell, plain))
    cell = plain;
  if (cell)
    outcome[item.rootId + " stored"] = *cell;
}

void request(RunningDevice& device, ManageableData& data, RequestOutcome& outcome)
{
  try
  {
    outcome["result"] = device.service().set(data) ? "done" : "refused";
  }
  catch (const std::exception& error)
  {
    outcome["result"] = std::string("throws: ") + error.what();
  }
  for (const host::RejectReason& reject : host::rejectReasons(data))
    outcome[reject.rootId.empty() ? "group" : reject.rootId + " refused"] = reject.reason;
}

} // namespace

PermutationTrial::PermutationTrial(const std::filesystem::path& itsService, const std::filesystem::path& itsMap,
                                   const std::filesystem::path& itsScratch)
    : service(itsService), map(itsMap), scratch(itsScratch)
{
  const SameWorkingFolder same;
  const RunningDevice first(settingsFor(service, map, scratch / "first"));
}

std::map<std::string, std::string> PermutationTrial::currentValues(const ItemTable& items) const
{
  const SameWorkingFolder same;
  std::map<std::string, std::string> values;
  RunningDevice device(settingsFor(service, map, scratch / "first"));
  for (const MapItem& item : items.items())
  {
    if (item.group.empty())
      continue;
    if (const auto value = liveValue(device, item))
      values[item.rootId] = *value;
  }
  return values;
}

RequestOutcome PermutationTrial::run(const GroupOfItems& group, const GroupChange& change,
                                     const std::vector<std::size_t>& order) const
{
  const SameWorkingFolder same;
  const std::filesystem::path folder = scratch / "trial";
  std::filesystem::remove_all(folder);
  std::filesystem::copy(scratch / "first", folder, std::filesystem::copy_options::recursive);
  RunningDevice device(settingsFor(service, map, folder));
  ManageableData data;
  for (const std::size_t place : order)
    data.populate(group.members[place]->rootId, group.members[place]->rootId, change[place]);
  RequestOutcome outcome;
  request(device, data, outcome);
  for (const MapItem* member : group.members)
    noteValues(device, *member, outcome);
  return outcome;
}

} // namespace cli
