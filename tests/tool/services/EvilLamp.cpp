// A lamp that would steer the terminal with all that it says.
#include <stdexcept>

#include "Lamp.h"

namespace
{

constexpr const char* evil = "e\x1b[31m\x07\x7f\x9b\xc2\x9b\xe2\x80\xaev";

std::string thrown(const std::string& level)
{
  if (level == "42")
    throw std::runtime_error(evil);
  return level + evil;
}

class EvilLamp : public lamp::Lamp<thrown>
{
};

} // namespace

SDM_SERVICE(EvilLamp)
