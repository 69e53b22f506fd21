// The handle of a database that a driver opens and keeps to itself.
#pragma once

#include <functional>

struct sqlite3;

namespace host
{
/// Runs `action`, which opens a database on this thread, by whatever library. Returns the handle of the one opened
/// last, which belongs to whoever opened it; null when none was. What `action` throws reaches the caller.
sqlite3* handleOpenedBy(const std::function<void()>& action);
} // namespace host
