// Points in time as texts.
#pragma once

#include <chrono>
#include <string>

#include "host/HostExport.h"

namespace host
{
/// ISO 8601 in UTC with milliseconds, such as "2026-01-31T23:59:59.123Z"; right for times before 1970 as well. Where
/// the system has no calendar for it, "@" and the seconds since 1970.
SDM_HOST_EXPORT std::string isoTime(std::chrono::system_clock::time_point when);

/// The same in the local zone without telling which: "2026-01-31T23:59:59.123".
SDM_HOST_EXPORT std::string localTime(std::chrono::system_clock::time_point when);
} // namespace host
