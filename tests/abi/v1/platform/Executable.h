// The base of everything a runtime context can find by name.
#pragma once

#include "PlatformExport.h"

/// A service of the device's framework, before anyone knows which one.
///
/// The manager receives an `Executable` from `SvcRTEContext::findService` and converts it with a checked
/// down-cast, so an implementation derives from the interface it serves, never from `Executable` alone.
/// The manager never deletes a service: the framework owns it and keeps it alive as long as any manager
/// that found it.
class SDM_PLATFORM_EXPORT Executable
{
public:
  virtual ~Executable() = default;
};
