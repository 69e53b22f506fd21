// The semaphores of this process.
#pragma once

#include <functional>

#include "host/LockWatch.h"

namespace host
{
/// `report` is called from any thread until `leaveLock` has returned.
void enterLock(const void* lock, std::function<LockReport()> report);
void leaveLock(const void* lock) noexcept;
} // namespace host
