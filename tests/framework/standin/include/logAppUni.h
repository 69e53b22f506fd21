// The framework's log: a C function, and a gate that is a macro's reach away.
#pragma once

extern "C" void logAppUni(const char* module, const char* sourceFile, int level, int line, const char* format, ...);

extern int logLevelOfAllApplications;

inline bool loggingOnAppUni(const char*, int level)
{
  return level <= logLevelOfAllApplications;
}
