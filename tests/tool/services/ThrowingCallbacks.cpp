// A service that fails while it registers.
#include <ServiceDataManagerIfc.h>

#include <stdexcept>

#include "Broken.h"

namespace
{

class Getter : public ManagedItemGetter
{
public:
  std::string getValue(const std::string&) override
  {
    return "";
  }
};

class ThrowingCallbacks : public Broken
{
public:
  void registerCallbacks(ServiceDataManagerIfc& manager) override
  {
    manager.addGetter({"getVolume", std::make_unique<Getter>().release()});
    throw std::runtime_error("the table of callbacks is empty");
  }
};

} // namespace

SDM_SERVICE(ThrowingCallbacks)
