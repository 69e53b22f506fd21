// A lamp that takes its time.
#include <chrono>
#include <thread>

#include "Lamp.h"

namespace
{

std::string made(const std::string& level)
{
  if (level == "42")
    std::this_thread::sleep_for(std::chrono::milliseconds(1300));
  return level;
}

class SlowLamp : public lamp::Lamp<made>
{
};

} // namespace

SDM_SERVICE(SlowLamp)
