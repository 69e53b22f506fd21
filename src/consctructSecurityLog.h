// What the security log says about a change.
#pragma once

#include <string>

#include "ServiceDataManagerExport.h"

class ManagedDataItem;

/// The record of setting `item` to `value`: schema, row, column and the value, escaped as XML, or a mask when
/// the item is stored encrypted. `item` must not be null.
SDM_EXPORT std::string consctructSecurityLog(ManagedDataItem* item, const std::string& value);
