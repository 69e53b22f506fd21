// The set request, the groups it touches and the update requests it makes.
#include "Model.h"

#include <ClientUtils.h>
#include <RejectReasonsStrings.h>

namespace judge
{

bool Model::setData(ManageableData& data)
{
  const Run run(*this);
  records.clear();
  lastingRecords = 0;
  std::vector<std::string> rootIds;
  data.getRootIds(rootIds);
  std::vector<SetRecord> wanted;
  for (const std::string& rootId : rootIds)
  {
    SetRecord record{rootId, "", false, "", nullptr};
    data.interogate(rootId, rootId, record.value);
    const auto found = published.find(rootId);
    if (found != published.end())
      record.item = found->second;
    wanted.push_back(record);
  }
  try
  {
    return setAndSend(wanted, data);
  }
  catch (...)
  {
    countAsFlagged(wanted);
    throw;
  }
}

/// What happens to an operation that an exception ends is the project's own decision: the validator forgets the groups
/// of all that was to be set, whether it came to that or not.
void Model::countAsFlagged(const std::vector<SetRecord>& wanted)
{
  for (const SetRecord& record : wanted)
  {
    if (record.item != nullptr && !record.item->isGroupItem.empty())
      groups.insert(record.item->isGroupItem);
  }
}

bool Model::setAndSend(std::vector<SetRecord>& wanted, ManageableData& data)
{
  trace(5, "setData %d\n", static_cast<int>(wanted.size()));
  trySet(wanted);
  Requests requests = requestsFor(wanted);
  for (const GroupRecord& group : validateGroups())
  {
    if (group.valid)
    {
      addValidGroup(requests, group.group);
      continue;
    }
    say(2, "setData failed because \"%s\" for group: \"%s\"", group.reason.c_str(), group.group.c_str());
    data.addRejectReason("", "/", group.reason);
  }
  forgetGroups();
  for (const SetRecord& record : wanted)
  {
    if (!record.validated || beginsWith(record.reason, RejectReasonsStrings::unchanged_data))
      data.addRejectReason(record.rootId, record.rootId, record.reason);
  }
  if (!send(requests, dataAccess()))
    return false;
  return data.isRejectListEmpty() || data.areAllRejectReasons(RejectReasonsStrings::unchanged_data);
}

/// A setter that throws may have handed its value to the validator before.
bool Model::callSetter(const ManagedDataItem& item, const std::string& value, std::string& error)
{
  try
  {
    return item.setter->setValue(value, item.dasIndexValue, error);
  }
  catch (...)
  {
    if (!item.isGroupItem.empty())
      groups.insert(item.isGroupItem);
    throw;
  }
}

void Model::trySet(std::vector<SetRecord>& wanted)
{
  for (SetRecord& record : wanted)
  {
    if (record.item == nullptr)
    {
      record.reason = "unknown item";
      trace(4, "trySetData \"%s\" \"%s\"", record.reason.c_str(), record.rootId.c_str());
      continue;
    }
    trace(4, "trySetData \"%s\" = \"%s\"", record.rootId.c_str(),
          ClientUtils::hidePassword(record.rootId, record.value).c_str());
    const ManagedDataItem& item = *record.item;
    record.reason = item.setter == nullptr ? "no setter available" : "";
    if (item.setter != nullptr)
      record.validated = item.setter->setValue(record.value, item.dasIndexValue, record.reason);
    trace(5, "setData \"%s\" = \"%s\", validated=\"%s\" \"%s\"", item.rootId.c_str(),
          ClientUtils::hidePassword(item.rootId, record.value).c_str(), record.validated ? "true" : "false",
          record.reason.c_str());
  }
}

Model::Requests Model::requestsFor(const std::vector<SetRecord>& wanted)
{
  Requests requests;
  for (const SetRecord& record : wanted)
  {
    if (record.item == nullptr)
      continue;
    const bool write = record.validated || beginsWith(record.reason, RejectReasonsStrings::not_changed);
    const std::string& group = record.item->isGroupItem;
    if (!group.empty())
    {
      flag(group);
      if (!write)
        groups.erase(group);
    }
    else if (write && !record.item->dasItem.empty())
    {
      addCell(requests, *record.item, record.value);
    }
  }
  return requests;
}

void Model::flag(const std::string& group)
{
  if (groups.count(group) != 0)
    return;
  trace(5, "Add group \"%s\" and flag it for validation", group.c_str());
  groups.insert(group);
}

bool Model::validateGroup(std::string& reason, const std::string& group)
{
  if (validator != nullptr)
    return validator->validateGroup(reason, group);
  reason = "validation ifc not found";
  trace(3, "validateGroupedData failed because \"%s\"", reason.c_str());
  return false;
}

std::vector<Model::GroupRecord> Model::validateGroups()
{
  std::vector<GroupRecord> outcomes;
  for (const std::string& group : std::set<std::string>(groups))
  {
    trace(6, "checking group %s", group.c_str());
    std::string reason;
    const bool valid = validateGroup(reason, group);
    outcomes.push_back({group, valid, valid ? "" : reason});
  }
  return outcomes;
}

void Model::forgetGroups()
{
  for (const std::string& group : std::set<std::string>(groups))
  {
    if (validator != nullptr)
      validator->clearGroup(group);
  }
  groups.clear();
  lastingGroups.clear();
}

} // namespace judge
