// A lamp that keeps another level than it was given.
#include "Lamp.h"

namespace
{

std::string made(const std::string& level)
{
  return level == "42" ? "41" : level;
}

class DimLamp : public lamp::Lamp<made>
{
};

} // namespace

SDM_SERVICE(DimLamp)
