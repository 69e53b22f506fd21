// The scoped hold of a semaphore.
#pragma once

#include "PlatformExport.h"

class Semaphore;

/// Takes the semaphore for as long as it lives. The destructor gives it back on the thread that took it and
/// does not throw, so a lock is released as well when an exception passes.
class SDM_PLATFORM_EXPORT CriticalSection
{
public:
  /// Waits, without a time limit, until a unit is free or is the caller's own. Borrows the semaphore.
  explicit CriticalSection(Semaphore& taken);
  ~CriticalSection();
  CriticalSection(const CriticalSection&) = delete;
  CriticalSection& operator=(const CriticalSection&) = delete;

private:
  Semaphore& semaphore;
};
