// A lamp that never comes back.
#include <chrono>
#include <thread>

#include "Lamp.h"

namespace
{

std::string made(const std::string& level)
{
  while (level == "42")
    std::this_thread::sleep_for(std::chrono::seconds(1));
  return level;
}

class StuckLamp : public lamp::Lamp<made>
{
};

} // namespace

SDM_SERVICE(StuckLamp)
