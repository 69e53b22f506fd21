// Reasons that mean something to both sides of a refusal.
#pragma once

#include <string>

#include "PlatformExport.h"

/// A setter's error text that begins with one of these is read by the manager. Non-empty, and neither begins
/// with the other.
namespace RejectReasonsStrings
{
/// The setter accepted a value that equals the current one: reported to the requester, yet no failure.
SDM_PLATFORM_EXPORT extern const std::string unchanged_data;

/// The setter refused because nothing would change: the value is written to the database all the same.
SDM_PLATFORM_EXPORT extern const std::string not_changed;
} // namespace RejectReasonsStrings
