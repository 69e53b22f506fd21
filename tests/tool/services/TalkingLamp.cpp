// A lamp that prints what it does.
#include <iostream>

#include "Lamp.h"

namespace
{

std::string made(const std::string& level)
{
  std::cout << "the lamp is at " << level << std::endl;
  return level;
}

class TalkingLamp : public lamp::Lamp<made>
{
};

} // namespace

SDM_SERVICE(TalkingLamp)
