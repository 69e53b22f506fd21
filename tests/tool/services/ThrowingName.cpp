// A service that cannot say its name.
#include <stdexcept>

#include "Broken.h"

namespace
{

class ThrowingName : public Broken
{
public:
  std::string name() const override
  {
    throw std::runtime_error("the name plate is missing");
  }
};

} // namespace

SDM_SERVICE(ThrowingName)
