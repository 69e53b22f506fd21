// The security log.
#pragma once

#include <string>
#include <time.h>

#include "Executable.h"

class SecurityLogServiceIfc : public Executable
{
public:
  virtual void logSecurityEvent(time_t when, int facility, int severity, int eventType, int eventClass, bool failed,
                                std::string record, std::string user, std::string origin) = 0;
};
