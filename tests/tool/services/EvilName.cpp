// A lamp that would steer the terminal with its name.
#include "Lamp.h"

namespace
{

std::string kept(const std::string& level)
{
  return level;
}

class EvilName : public lamp::Lamp<kept>
{
public:
  std::string name() const override
  {
    return "e\x1b[31m\x07\x7f\x9b\xc2\x9b\xe2\x80\xaev";
  }
};

} // namespace

SDM_SERVICE(EvilName)
