// A service that works, for others to break.
#pragma once

#include "loadable/Service.h"

class Broken : public loadable::Service
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
