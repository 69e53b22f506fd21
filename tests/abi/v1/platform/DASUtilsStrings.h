// Names of the database schemas whose every change leaves a record in the security log.
#pragma once

#include <string>

#include "PlatformExport.h"

/// Schema names as they stand in item maps and requests; non-empty and different from each other.
namespace DASUtilsStrings
{
SDM_PLATFORM_EXPORT extern const std::string SipBaseSettingsSchema;
SDM_PLATFORM_EXPORT extern const std::string SipFeatureAccessSchema;
SDM_PLATFORM_EXPORT extern const std::string SipPermissionsSchema;
SDM_PLATFORM_EXPORT extern const std::string SnmpSettingsSchema;
SDM_PLATFORM_EXPORT extern const std::string TransportSettingsSchema;
} // namespace DASUtilsStrings
