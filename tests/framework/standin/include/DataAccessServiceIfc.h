// The database.
#pragma once

#include <stddef.h>
#include <string>

#include "Executable.h"

class DataAccessServiceIfc : public Executable
{
public:
  virtual std::string sendRequest(const char* request, size_t length) = 0;
  virtual bool connected() const = 0;
};
