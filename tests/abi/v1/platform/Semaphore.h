// The counting semaphore under the manager's lock.
#pragma once

#include <memory>

#include "PlatformExport.h"

/// A semaphore that a thread may take again while it holds it, when made so.
///
/// The library makes one per manager, as `Semaphore(1, 1, true)`, and takes it only through
/// `CriticalSection`.
class SDM_PLATFORM_EXPORT Semaphore
{
public:
  /// `initial` units are free at first and never more than `maximum`; 0 <= initial <= maximum, maximum >= 1.
  /// With `reentrant` the thread that holds a unit takes it again without waiting and gives it back with the
  /// matching number of releases.
  Semaphore(int initial, int maximum, bool reentrant);

  /// No thread may hold or wait for it any more.
  ~Semaphore();
  Semaphore(const Semaphore&) = delete;
  Semaphore& operator=(const Semaphore&) = delete;

private:
  /// The platform's own representation, and its way to it.
  struct Content;
  friend class CriticalSection;
  friend struct SemaphoreContent;
  std::unique_ptr<Content> content;
};
