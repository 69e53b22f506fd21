#include "CallWatch.h"

#include <RejectReasonsStrings.h>

namespace cli
{

CallWatch::CallWatch(const ItemTable& items)
{
  for (const MapItem& item : items.items())
    places[{item.setter, item.indexValue}] = {item.group, item.isLocal()};
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
  if (reason.rfind(RejectReasonsStrings::not_changed, 0) == 0)
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
  const bool named = reason.rfind(prefix, 0) == 0;
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
