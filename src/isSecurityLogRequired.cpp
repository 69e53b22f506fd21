#include "isSecurityLogRequired.h"

#include <DASUtilsStrings.h>

bool isSecurityLogRequired(const std::string& schema, const std::string& item)
{
  return schema == DASUtilsStrings::SipBaseSettingsSchema || schema == DASUtilsStrings::SipFeatureAccessSchema ||
         schema == DASUtilsStrings::SipPermissionsSchema || schema == DASUtilsStrings::SnmpSettingsSchema ||
         schema == DASUtilsStrings::TransportSettingsSchema || item == "CallForwardingAllowed";
}
