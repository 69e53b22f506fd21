// The management agent: the one who turns requests from outside into calls of the manager.
#pragma once

#include "PlatformExport.h"

class ManageableData;

/// The receiver of observations. The library only passes the pointer on, to
/// `LocalMgmtIfc::registerService` and `LocalMgmtIfc::subscribe`; the service that owns the manager
/// implements it, usually by calling the manager's `manageableDataChanged`.
class SDM_PLATFORM_EXPORT MgmtAgentIfc
{
public:
  virtual ~MgmtAgentIfc() = default;

  /// Subscribed root ids have new values in the local management store.
  ///
  /// `data` holds the root ids and, for each, its new value under the root id itself; it belongs to the
  /// store and is valid only during the call. The store calls on a thread of its own or on that of whoever
  /// made the change, without any lock of its own that a setter could need. What the agent throws is the
  /// store's to contain.
  virtual void observedDataChanged(ManageableData& data) = 0;
};
