// A lamp that cannot be made once: the next one finds the reason taken away.
#include <filesystem>
#include <stdexcept>

#include "Lamp.h"

namespace
{

std::string kept(const std::string& level)
{
  return level;
}

class OnceLamp : public lamp::Lamp<kept>
{
public:
  OnceLamp()
  {
    if (std::filesystem::remove("no-lamp-once"))
      throw std::runtime_error("no lamp is wired");
  }
};

} // namespace

SDM_SERVICE(OnceLamp)
