// The way from the C parser back into the manager.
#pragma once

#include "ServiceDataManagerExport.h"

extern "C"
{
  /// Expat's callbacks for a reply; `userData` is the `ServiceDataManager` that parses it. Nothing is thrown
  /// through a running parser, whose C frames need not be able to unwind: the parse is stopped and its caller
  /// gets the exception. Without a running parse an exception leaves as usual.
  SDM_EXPORT void DASStartElementHandler(void* userData, const char* name, const char** atts);
  SDM_EXPORT void DASCharacterDataHandler(void* userData, const char* s, int len);
  SDM_EXPORT void DASEndElementHandler(void* userData, const char* name);
}
