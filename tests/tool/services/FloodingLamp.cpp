// A lamp that writes into every pipe it finds open: the head of a text without end.
#include <array>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

#include "Lamp.h"

namespace
{

std::string flooded(const std::string& level)
{
  std::array<char, 9> head{};
  std::memset(head.data(), 0x7f, head.size());
  for (int descriptor = 3; level == "42" && descriptor < 64; ++descriptor)
  {
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode))
      static_cast<void>(::write(descriptor, head.data(), head.size()) == 0);
  }
  return level;
}

class FloodingLamp : public lamp::Lamp<flooded>
{
};

} // namespace

SDM_SERVICE(FloodingLamp)
