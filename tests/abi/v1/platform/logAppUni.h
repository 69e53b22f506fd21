// The device's log.
#pragma once

#include "PlatformExport.h"

/// Writes one line.
///
/// `module` and `sourceFile` are texts of the caller's component ("ServiceDataManager" and
/// "./src/ServiceDataManager" for the library), `line` a source line. Levels: 2 failures, 3 refusals and
/// fall-backs, 4 trace of single operations, 5 trace of operations with request and reply texts, 6 details.
/// A line is written whatever the gate says: the caller asks `loggingOnAppUni` where it matters. `format`
/// and its arguments are as for printf, never null; the text is UTF-8 as far as the values are, may be long
/// (whole requests and replies) and may hold or end with a line feed. Called from any thread, often with the
/// manager's lock held.
SDM_PLATFORM_EXPORT void logAppUni(const char* module, const char* sourceFile, int level, int line, const char* format,
                                   ...) __attribute__((format(printf, 5, 6)));

/// The gate: are lines of this level wanted from this module now? Asked before every trace line, so it
/// should be cheap. It may change at any time.
SDM_PLATFORM_EXPORT bool loggingOnAppUni(const char* module, int level);
