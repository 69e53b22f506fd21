// What the device knows of its own hardware.
#pragma once

#include <cstdint>

#include "Executable.h"
#include "PlatformExport.h"

/// Tells the variant of the unit the service runs on.
class SDM_PLATFORM_EXPORT PhysicalInterfaceServiceIfc : public Executable
{
public:
  ~PhysicalInterfaceServiceIfc() override = default;

  /// The unit's number of physical interfaces. Units with 2, 3 or 4 of them take the alternative defaults
  /// of an item map file. Asked once per load of such a file, with the manager's lock held.
  virtual uint32_t getInterfaceCount() = 0;
};
