// The local management store (OCMS): values that live on the device only, and what others see of the rest.
#pragma once

#include <list>
#include <string>

#include "DxlDictionary.h"
#include "Executable.h"
#include "PlatformExport.h"

class ManageableData;
class MgmtAgentIfc;

/// Looks up, publishes and observes values by root id. All texts are UTF-8 byte strings. Every operation is
/// synchronous, may block and may throw; all but `registerService` are called with the manager's lock held.
class SDM_PLATFORM_EXPORT LocalMgmtIfc : public Executable, public DxlDictionary
{
public:
  ~LocalMgmtIfc() override = default;

  /// Announces a service and its agent. `serviceName` may be empty and `agent` may be null when the owning
  /// service set up neither. The same service may register any number of times. `version` is 1. The agent
  /// is borrowed. Returns whether the store accepted the registration.
  virtual bool registerService(const std::string& serviceName, MgmtAgentIfc* agent, int version) = 0;

  /// Fills in a record.
  ///
  /// A record with root ids (`getRootIds`) gets the value of each under the root id itself; one that the
  /// store does not hold stays without a value. A record whose own root id (`getRootId`) is set names a
  /// dictionary and gets its entries instead: key "/item[1]/rootId" and so on, each under the dictionary's
  /// name. An empty record is filled with nothing, successfully. Returns false when the lookup failed or
  /// the dictionary does not exist; the record's values are then undefined.
  virtual bool lookupData(ManageableData& data) = 0;

  /// From now on reports changes of these root ids to `agent` (borrowed; null means that nobody listens).
  /// The list may be empty. Repeating a subscription does not double its reports. Returns whether the
  /// subscription was accepted. The list is the caller's; the store may reorder it, the library does not
  /// look at it again.
  virtual bool subscribe(std::list<std::string>& rootIds, MgmtAgentIfc* agent) = 0;

  /// Stores the values of the record's root ids, all or none, and returns whether they were stored.
  virtual bool publishData(ManageableData& data) = 0;

  /// May the record's root ids be changed now? The answer is the record's own root id: left empty, yes;
  /// otherwise it names the item that must not be. `context` is always null. The result is not used.
  virtual bool checkData(ManageableData& data, void* context) = 0;
};
