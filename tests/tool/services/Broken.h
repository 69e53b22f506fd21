// A service that works, for others to break.
#pragma once

#include "host/Service.h"

class Broken : public host::Service
{
public:
  std::string name() const override
  {
    return "Broken";
  }
  void registerCallbacks(ServiceDataManagerIfc&) override
  {
  }
};
