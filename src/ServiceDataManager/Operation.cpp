#include "Operation.h"

#include <exception>
#include <iterator>
#include <set>
#include <utility>

ServiceDataManager::Operation::Operation(ServiceDataManager& owner)
    : hold(owner),
      manager(owner),
      exceptionsBefore(std::uncaught_exceptions()),
      inner(owner.runningOperations > 0),
      outerReply(owner.reply),
      groupsToKeep(owner.flaggedGroups()),
      outerRecordsToKeep(owner.recordsToKeep)
{
  if (inner)
  {
    outerGroups.swap(manager.groupsNeedingValidation);
    outerRecords.swap(manager.pendingSecurityLogRecords);
  }
  if (outerReply->parser != nullptr)
    manager.reply = &innerReply;
  manager.recordsToKeep = manager.pendingSecurityLogRecords.size();
  ++manager.runningOperations;
}

ServiceDataManager::Operation::~Operation()
{
  if (std::uncaught_exceptions() > exceptionsBefore)
    dropGatheredState();
  manager.reply = outerReply;
  if (inner)
    restoreOuterState();
  else
    freeRetired();
  manager.recordsToKeep = outerRecordsToKeep;
  --manager.runningOperations;
}

void ServiceDataManager::Operation::dropPendingRecords()
{
  manager.lockIsHeld();
  manager.pendingSecurityLogRecords.clear();
  manager.recordsToKeep = 0;
}

void ServiceDataManager::Operation::groupsAreJudged()
{
  groupsToKeep.clear();
}

void ServiceDataManager::Operation::dropGatheredState()
{
  for (const auto& group : takeOwnGroups())
    forgetGroup(group.first);
  // What the validator's own calls of the manager left.
  takeOwnGroups();
  if (manager.pendingSecurityLogRecords.size() > manager.recordsToKeep)
    manager.pendingSecurityLogRecords.resize(manager.recordsToKeep);
}

std::map<std::string, bool> ServiceDataManager::Operation::takeOwnGroups()
{
  // Moved and not copied: nothing may fail while an exception passes.
  std::map<std::string, bool> own;
  own.swap(manager.groupsNeedingValidation);
  for (const std::string& group : groupsToKeep)
    manager.groupsNeedingValidation.insert(own.extract(group));
  return own;
}

void ServiceDataManager::Operation::forgetGroup(const std::string& group)
{
  try
  {
    manager.clearGroupedData(group);
  }
  catch (...)
  {
    // The exception on its way to the caller is the one that tells.
  }
}

void ServiceDataManager::Operation::restoreOuterState()
{
  outerGroups.merge(manager.groupsNeedingValidation);
  manager.groupsNeedingValidation.swap(outerGroups);
  // What the inner operation leaves is not the outer one's to drop. Records that the outer one has gathered already are
  // in between, and only what stands in front of these can be told from its own.
  if (outerRecords.size() <= outerRecordsToKeep)
    outerRecordsToKeep = outerRecords.size() + manager.pendingSecurityLogRecords.size();
  manager.pendingSecurityLogRecords.swap(outerRecords);
  manager.pendingSecurityLogRecords.insert(manager.pendingSecurityLogRecords.end(),
                                           std::make_move_iterator(outerRecords.begin()),
                                           std::make_move_iterator(outerRecords.end()));
}

void ServiceDataManager::Operation::freeRetired()
{
  // A callback's destructor may call the manager and get rid of more.
  while (!manager.retired.empty())
  {
    // The operation may have noted a change of an item that is about to be freed.
    const std::set<const ManagedDataItem*> kept(manager.items.begin(), manager.items.end());
    for (ManagedDataItem*& changed : manager.changedItems)
    {
      if (kept.count(changed) == 0)
        changed = nullptr;
    }
    std::vector<Retired>().swap(manager.retired);
  }
}

ServiceDataManager::TriedValues::TriedValues(ServiceDataManager& owner, const std::vector<SetDataBlob>& triedBlobs)
    : manager(owner), blobs(&triedBlobs), exceptionsBefore(std::uncaught_exceptions())
{
}

ServiceDataManager::TriedValues::TriedValues(ServiceDataManager& owner, const ManagedDataItem& triedItem)
    : manager(owner), item(&triedItem), exceptionsBefore(std::uncaught_exceptions())
{
}

ServiceDataManager::TriedValues::~TriedValues()
{
  if (std::uncaught_exceptions() == exceptionsBefore)
    return;
  manager.lockIsHeld();
  flagGroupOf(item);
  if (blobs == nullptr)
    return;
  for (const SetDataBlob& blob : *blobs)
    flagGroupOf(blob.item);
}

void ServiceDataManager::TriedValues::flagGroupOf(const ManagedDataItem* tried)
{
  if (tried != nullptr && !tried->isGroupItem.empty())
    manager.groupsNeedingValidation.emplace(tried->isGroupItem, true);
}
