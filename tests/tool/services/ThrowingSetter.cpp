// A service whose setter fails at its first value.
#include <ServiceDataManagerIfc.h>

#include <stdexcept>

#include "Broken.h"

namespace
{

class Setter : public ManagedItemSetter
{
public:
  bool setValue(const std::string&, const std::string&, std::string&) override
  {
    throw std::runtime_error("the amplifier is off");
  }
};

class ThrowingSetter : public Broken
{
public:
  void registerCallbacks(ServiceDataManagerIfc& manager) override
  {
    manager.addSetter({"setVolume", std::make_unique<Setter>().release()});
  }
};

} // namespace

SDM_SERVICE(ThrowingSetter)
