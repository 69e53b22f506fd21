// The one building block of all request texts.
#pragma once

#include <string>

#include "ServiceDataManagerExport.h"

/// The element `name` with the content `value`. Neither is escaped or checked.
SDM_EXPORT std::string createXmlElement(const std::string& name, const std::string& value);
