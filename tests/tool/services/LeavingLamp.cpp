// A lamp that ends the process as if all were well.
#include <cstdlib>

#include "Lamp.h"

namespace
{

std::string made(const std::string& level)
{
  if (level == "42")
    std::_Exit(0);
  return level;
}

class LeavingLamp : public lamp::Lamp<made>
{
};

} // namespace

SDM_SERVICE(LeavingLamp)
