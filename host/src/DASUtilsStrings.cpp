// Names of schemas, made when the library is loaded.
#include <DASUtilsStrings.h>

const std::string DASUtilsStrings::SipBaseSettingsSchema = "SipBaseSettings";
const std::string DASUtilsStrings::SipFeatureAccessSchema = "SipFeatureAccess";
const std::string DASUtilsStrings::SipPermissionsSchema = "SipPermissions";
const std::string DASUtilsStrings::SnmpSettingsSchema = "SnmpSettings";
const std::string DASUtilsStrings::TransportSettingsSchema = "TransportSettings";
