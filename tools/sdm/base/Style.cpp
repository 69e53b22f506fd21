// Colours go to terminals alone, and only where the user did not turn them off.
#include "Style.h"

#include <cstdlib>
#include <unistd.h>

namespace cli
{

bool wantsColours(int descriptor)
{
  const char* refused = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  return isatty(descriptor) != 0 && (refused == nullptr || *refused == '\0') && terminal != nullptr &&
         *terminal != '\0' && std::string(terminal) != "dumb";
}

} // namespace cli
