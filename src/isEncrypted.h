// Is an item's value stored encrypted?
#pragma once

#include "ServiceDataManagerIfc.h"

namespace sdm
{

/// Exactly "true" counts; a carriage return behind it, a capital letter or a 1 leaves the value in plain text.
inline bool isEncrypted(const ManagedDataItem& item)
{
  return item.dasEncrypted == "true";
}

} // namespace sdm
