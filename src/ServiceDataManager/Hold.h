// The scoped hold of a manager.
#pragma once

#include "ServiceDataManager.h"

/// Holds the manager's lock. The lock is the platform's and knows nothing of the compiler's checks, so this says for it
/// what is taken: without a hold, nothing that the lock guards can be touched. A thread that holds the manager may hold
/// it again, one function further down.
class SDM_SCOPED_HOLD [[nodiscard]] ServiceDataManager::Hold
{
public:
  explicit Hold(ServiceDataManager& manager) SDM_TAKES(manager) : lock(manager.semaphore)
  {
  }
  ~Hold() SDM_GIVES_BACK() = default;
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;

private:
  CriticalSection lock;
};
