// What the device knows of its hardware.
#pragma once

#include <stdint.h>

#include "Executable.h"

class PhysicalInterfaceServiceIfc : public Executable
{
public:
  virtual uint32_t getInterfaceCount() = 0;
};
