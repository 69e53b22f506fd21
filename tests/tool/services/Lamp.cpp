// The lamp that works.
#include "Lamp.h"

namespace
{

std::string made(const std::string& level)
{
  return level;
}

class Lamp : public lamp::Lamp<made>
{
};

} // namespace

SDM_SERVICE(Lamp)
