// Names of the database schemas whose every change leaves a record in the security log.
#pragma once

#include <string>

#include "PlatformExport.h"

/// Schema names as they stand in item maps and requests; non-empty and different from each other.
namespace DASUtilsStrings
{
/// The basic settings of SIP.
SDM_PLATFORM_EXPORT extern const std::string SipBaseSettingsSchema;
/// Which features of SIP may be used.
SDM_PLATFORM_EXPORT extern const std::string SipFeatureAccessSchema;
/// What users of SIP are permitted.
SDM_PLATFORM_EXPORT extern const std::string SipPermissionsSchema;
/// The settings of SNMP.
SDM_PLATFORM_EXPORT extern const std::string SnmpSettingsSchema;
/// The settings of the transport.
SDM_PLATFORM_EXPORT extern const std::string TransportSettingsSchema;
} // namespace DASUtilsStrings
