// Which changes the security log has to know.
#pragma once

#include <string>

#include "ServiceDataManagerExport.h"

/// True for every column of the schemas named in `DASUtilsStrings`, and for the column "CallForwardingAllowed"
/// of any schema.
SDM_EXPORT bool isSecurityLogRequired(const std::string& schema, const std::string& item);
