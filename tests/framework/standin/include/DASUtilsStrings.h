// Schema names: constants of every file that includes them.
#pragma once

#include <string>

namespace DASUtilsStrings
{
static const std::string SipBaseSettingsSchema = "BaseSip";
static const std::string SipFeatureAccessSchema = "FeaturesSip";
static const std::string SipPermissionsSchema = "PermissionsSip";
static const std::string SnmpSettingsSchema = "Snmp";
static const std::string TransportSettingsSchema = "Audio";
} // namespace DASUtilsStrings
