// How the library logs: every line under one module and source name.
//
// Both are macros so that a closed gate costs no more than the question: the arguments of a trace line are not
// even evaluated, so nothing is formatted, copied or masked for it.
#pragma once

#include <logAppUni.h>

/// A line that is written whatever the gate says.
#define SDM_LOG(level, ...) logAppUni("ServiceDataManager", "./src/ServiceDataManager", level, __LINE__, __VA_ARGS__)

/// A line that is written while the gate is open for its level.
#define SDM_TRACE(level, ...)                                                                                          \
  do                                                                                                                   \
  {                                                                                                                    \
    if (loggingOnAppUni("ServiceDataManager", level))                                                                  \
      SDM_LOG(level, __VA_ARGS__);                                                                                     \
  } while (false)
