// A service without a name.
#include "Broken.h"

namespace
{

class Nameless : public Broken
{
public:
  std::string name() const override
  {
    return "";
  }
};

} // namespace

SDM_SERVICE(Nameless)
