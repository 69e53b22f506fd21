// A service that calls what no library has.
#include "Broken.h"

std::string ringTheBell();

namespace
{

class Unresolved : public Broken
{
public:
  std::string name() const override
  {
    return ringTheBell();
  }
};

} // namespace

SDM_SERVICE(Unresolved)
