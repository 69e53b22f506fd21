// What makes the local management store a source of dictionaries.
#pragma once

#include "PlatformExport.h"

/// A store that can fill a `ManageableData` record with a dictionary of numbered keys.
///
/// The library calls no operation of it; it stands in the contract because `LocalMgmtIfc` derives from it
/// and the layout of the derived class is part of the binary interface.
class SDM_PLATFORM_EXPORT DxlDictionary
{
public:
  virtual ~DxlDictionary() = default;
};
