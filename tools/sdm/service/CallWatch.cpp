// Values of a group wait for its verdict; refusals are kept up to a number.
#include "CallWatch.h"

#include <ManageableData.h>
#include <RejectReasonsStrings.h>

#include "base/Text.h"
#include "host/Secrets.h"
#include "map/Masking.h"
#include "map/SecretTexts.h"

namespace cli
{

CallWatch::CallWatch(const ItemTable& items)
{
  for (const MapItem& item : items.items())
  {
    places[{item.setter, item.indexValue}] = {item.group, item.isLocal()};
    rootIds[{item.setter, item.indexValue}] = item.rootId;
    rootIds[{item.getter, item.indexValue}] = item.rootId;
  }
}

std::string CallWatch::itemOf(const std::string& callback, const std::string& row) const
{
  const auto known = rootIds.find({callback, row});
  return known == rootIds.end() ? "" : known->second;
}

bool CallWatch::isSecret(const Place& place) const
{
  return host::isSecret(place.first) || host::isSecret(itemOf(place.first, place.second));
}

std::string CallWatch::tellable(const std::string& text) const
{
  SecretTexts known(1);
  const auto add = [&](const std::string& secret)
  {
    for (const std::string& form : formsOf(secret))
      known.add(form, Masking::mask);
  };
  const std::lock_guard<std::mutex> hold(mutex);
  for (const std::string& secret : passing)
    add(secret);
  for (const auto& [place, value] : live)
  {
    if (isSecret(place))
      add(value);
  }
  for (const auto& [group, values] : pending)
  {
    for (const auto& [place, value] : values)
    {
      if (isSecret(place))
        add(value);
    }
  }
  // The manager goes by how these reasons begin.
  for (const std::string& agreed : {RejectReasonsStrings::not_changed, RejectReasonsStrings::unchanged_data})
  {
    if (beginsWith(text, agreed))
      return agreed + known.without(text.substr(agreed.size()));
  }
  return known.without(text);
}

void CallWatch::operationBegins(const OperationCall& call)
{
  const std::lock_guard<std::mutex> hold(mutex);
  ++operations;
  if (call.data == nullptr)
    return;
  std::vector<std::string> requested;
  call.data->getRootIds(requested);
  for (const std::string& rootId : requested)
  {
    std::string value;
    if (host::isSecret(rootId) && call.data->interogate(rootId, rootId, value))
      passing.insert(value);
  }
}

void CallWatch::operationEnded(const OperationCall& /*call*/, const OperationAnswer& /*answer*/)
{
  const std::lock_guard<std::mutex> hold(mutex);
  if (--operations == 0)
    passing.clear();
}

void CallWatch::notePassing(const Place& place, const std::string& value)
{
  const std::lock_guard<std::mutex> hold(mutex);
  if (isSecret(place))
    passing.insert(value);
}

void CallWatch::setterBegins(const SetterCall& call)
{
  notePassing({call.setter, call.row}, call.value);
}

void CallWatch::getterEnded(const GetterCall& call)
{
  notePassing({call.getter, call.row}, call.value);
}

void CallWatch::setterEnded(const SetterCall& call)
{
  if (call.thrown)
    return;
  const Place place(call.setter, call.row);
  const auto known = places.find(place);
  const Item item = known == places.end() ? Item() : known->second;
  const std::lock_guard<std::mutex> hold(mutex);
  ++report.setterCalls;
  if (item.local && !call.value.empty())
    ++report.localValues;
  if (!call.accepted)
    noteRefusal(place, call.reason);
  else if (item.group.empty())
    live[place] = call.value;
  else
    pending[item.group][place] = call.value;
}

void CallWatch::noteRefusal(const Place& place, const std::string& reason)
{
  ++report.refused;
  if (beginsWith(reason, RejectReasonsStrings::not_changed))
    ++report.repeated;
  else if (report.refusals.size() < mostKept)
    report.refusals.push_back({place.first, place.second, reason});
}

void CallWatch::validatorEnded(const ValidatorCall& call)
{
  if (call.accepted)
    groupJudged(call.group, *call.accepted, call.reason);
  else if (call.operation == "clearGroup" && !call.thrown)
    groupCleared(call.group);
  else if (call.items)
    groupGiven(*call.items);
}

void CallWatch::groupGiven(const std::vector<std::pair<std::string, std::string>>& items)
{
  const std::lock_guard<std::mutex> hold(mutex);
  for (const auto& [rootId, value] : items)
    report.groupItems.insert(rootId);
}

void CallWatch::groupJudged(const std::string& group, bool accepted, const std::string& reason)
{
  const std::lock_guard<std::mutex> hold(mutex);
  ++report.groupsJudged;
  if (accepted)
  {
    report.groupsTaken.insert(group);
    for (const auto& [place, value] : pending[group])
      live[place] = value;
    return;
  }
  report.groupsTaken.erase(group);
  // The group is told anyway, and many validators begin with it.
  const std::string prefix = group + ": ";
  const bool named = beginsWith(reason, prefix);
  if (report.groupRefusals.size() < mostKept)
    report.groupRefusals.push_back({group, named ? reason.substr(prefix.size()) : reason});
}

void CallWatch::groupCleared(const std::string& group)
{
  const std::lock_guard<std::mutex> hold(mutex);
  pending.erase(group);
}

std::optional<std::string> CallWatch::taken(const std::string& setter, const std::string& row) const
{
  const std::lock_guard<std::mutex> hold(mutex);
  const auto found = live.find({setter, row});
  return found == live.end() ? std::nullopt : std::optional<std::string>(found->second);
}

CallReport CallWatch::take()
{
  const std::lock_guard<std::mutex> hold(mutex);
  return std::exchange(report, CallReport());
}

} // namespace cli
