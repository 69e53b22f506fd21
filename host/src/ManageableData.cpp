// Root ids stand in the order they came in, each once; values by root id and name.
#include "host/RejectReasons.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

struct ManageableData::Content
{
  std::string ownRootId;
  std::vector<std::string> rootIds;
  std::unordered_set<std::string> rootIdsKnown;
  std::unordered_map<std::string, std::unordered_map<std::string, std::string>> values;
  std::vector<host::RejectReason> rejectReasons;
};

/// The way of the host's services into a record.
struct ManageableDataContent
{
  static const std::vector<host::RejectReason>& rejectReasons(const ManageableData& data)
  {
    return data.content->rejectReasons;
  }
};

ManageableData::ManageableData() : content(std::make_unique<Content>())
{
}

ManageableData::~ManageableData() = default;

void ManageableData::setRootId(const std::string& rootId, LocalMgmtIfc*)
{
  content->ownRootId = rootId;
}

std::string ManageableData::getRootId() const
{
  return content->ownRootId;
}

void ManageableData::addRootId(const std::string& rootId, LocalMgmtIfc*)
{
  if (content->rootIdsKnown.insert(rootId).second)
    content->rootIds.push_back(rootId);
}

void ManageableData::getRootIds(std::vector<std::string>& rootIds)
{
  const std::vector<std::string>& own = content->rootIds;
  rootIds.insert(rootIds.end(), own.begin(), own.end());
}

bool ManageableData::interogate(const std::string& rootId, const std::string& name, std::string& value)
{
  const auto named = content->values.find(rootId);
  if (named != content->values.end())
  {
    const auto found = named->second.find(name);
    if (found != named->second.end())
    {
      value = found->second;
      return true;
    }
  }
  value.clear();
  return false;
}

void ManageableData::populate(const std::string& rootId, const std::string& name, const std::string& value)
{
  content->values[rootId][name] = value;
  if (name == rootId)
    addRootId(rootId, nullptr);
}

void ManageableData::addRejectReason(std::string rootId, std::string name, std::string reason)
{
  content->rejectReasons.push_back({std::move(rootId), std::move(name), std::move(reason)});
}

bool ManageableData::isRejectListEmpty()
{
  return content->rejectReasons.empty();
}

bool ManageableData::areAllRejectReasons(const std::string& reason)
{
  return std::all_of(content->rejectReasons.begin(), content->rejectReasons.end(),
                     [&](const host::RejectReason& refusal) { return refusal.reason == reason; });
}

std::vector<host::RejectReason> host::rejectReasons(const ManageableData& data)
{
  return ManageableDataContent::rejectReasons(data);
}
