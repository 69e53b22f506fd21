// The runtime context.
#pragma once

#include <string>

#include "Executable.h"

class SvcRTEContext
{
public:
  virtual ~SvcRTEContext()
  {
  }
  virtual Executable* findService(const std::string& interfaceName) = 0;
  virtual const char* platformName() const = 0;
};
