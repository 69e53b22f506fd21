// The device under a measurement, made so that it holds a workload's values.
#pragma once

#include <memory>

#include <SvcRTEContext.h>

#include "Workload.h"

namespace bench
{

/// The name of the dictionary that holds the workload's map; the store has it beside the values.
extern const char* const dictionaryName;

class Platform
{
public:
  virtual ~Platform() = default;
  virtual SvcRTEContext& context() = 0;
};

/// The one that the program is linked with: in memory, or the host platform in the working directory. Borrows nothing.
std::unique_ptr<Platform> makePlatform(const Workload& workload);

} // namespace bench
