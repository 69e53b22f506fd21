// Which groups of items have to be judged as a whole, and the validator's judgement.
#include <ValidatorIfc.h>

#include "Log.h"
#include "ServiceDataManager.h"

void ServiceDataManager::flagGroupForValidation(const std::string& group)
{
  if (groupsNeedingValidation.count(group) != 0)
    return;
  SDM_TRACE(5, "Add group \"%s\" and flag it for validation", group.c_str());
  groupsNeedingValidation.emplace(group, true);
}

void ServiceDataManager::clearFlagGroupForValidation(const std::string& group)
{
  groupsNeedingValidation.erase(group);
}

void ServiceDataManager::processItemForGroupData(ManagedDataItem* item)
{
  if (!item->isGroupItem.empty())
    flagGroupForValidation(item->isGroupItem);
}

bool ServiceDataManager::validateGroupedData(std::string& reason, const std::string& group) const
{
  if (validator != nullptr)
    return validator->validateGroup(reason, group);
  reason = "validation ifc not found";
  SDM_TRACE(3, "validateGroupedData failed because \"%s\"", reason.c_str());
  return false;
}

void ServiceDataManager::clearGroupedData(const std::string& group)
{
  if (validator != nullptr)
    validator->clearGroup(group);
}

void ServiceDataManager::removeAllGroupsFromNeedingValidation()
{
  for (const std::string& group : flaggedGroups())
    clearGroupedData(group);
}

std::vector<ServiceDataManager::GroupDataBlob> ServiceDataManager::validateAllGroups() const
{
  std::vector<GroupDataBlob> outcomes;
  for (const std::string& group : flaggedGroups())
  {
    SDM_TRACE(6, "checking group %s", group.c_str());
    std::string reason;
    const bool valid = validateGroupedData(reason, group);
    outcomes.emplace_back(group, valid, valid ? std::string() : reason);
  }
  return outcomes;
}

std::vector<std::string> ServiceDataManager::flaggedGroups() const
{
  std::vector<std::string> groups;
  for (const auto& group : groupsNeedingValidation)
    groups.push_back(group.first);
  return groups;
}
