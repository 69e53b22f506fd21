// A lamp that ends the process.
#include <cstdlib>

#include "Lamp.h"

namespace
{

std::string made(const std::string& level)
{
  if (level == "42")
    std::abort();
  return level;
}

class DyingLamp : public lamp::Lamp<made>
{
};

} // namespace

SDM_SERVICE(DyingLamp)
