// A service that cannot be made.
#include <stdexcept>

#include "Broken.h"

namespace
{

class ThrowingService : public Broken
{
public:
  ThrowingService()
  {
    throw std::runtime_error("no bell is wired");
  }
};

} // namespace

SDM_SERVICE(ThrowingService)
