#include "Subcommand.h"
#include "run/Run.h"

namespace cli
{

const std::vector<Subcommand>& subcommands()
{
  static const std::vector<Subcommand> table = {
      {"run", "Bring the device up, then take commands", addRun},
  };
  return table;
}

} // namespace cli
