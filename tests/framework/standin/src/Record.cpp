// The record's operations that are not inline.
#include <ManageableData.h>

#include <algorithm>

void ManageableData::addRootId(const std::string& rootId, LocalMgmtIfc*)
{
  if (std::find(listed.begin(), listed.end(), rootId) == listed.end())
    listed.push_back(rootId);
}

void ManageableData::getRootIds(std::vector<std::string>& rootIds)
{
  rootIds.insert(rootIds.end(), listed.begin(), listed.end());
}

bool ManageableData::interogate(const std::string& rootId, const std::string& name, std::string& value)
{
  const auto found = values.find(std::make_pair(rootId, name));
  value = found == values.end() ? std::string() : found->second;
  return found != values.end();
}

void ManageableData::populate(const std::string& rootId, const std::string& name, const std::string& value)
{
  values[std::make_pair(rootId, name)] = value;
  ++sequence;
  if (rootId == name)
    addRootId(rootId, nullptr);
}

void ManageableData::addRejectReason(std::string, std::string, std::string reason)
{
  refusals.push_back(reason);
}

bool ManageableData::areAllRejectReasons(const std::string& reason)
{
  return std::count(refusals.begin(), refusals.end(), reason) == static_cast<std::ptrdiff_t>(refusals.size());
}
