#include "Subcommand.h"
#include "check/Check.h"
#include "new/New.h"
#include "run/Run.h"

namespace cli
{

const std::vector<Subcommand>& subcommands()
{
  static const std::vector<Subcommand> table = {
      {"check", "Tell what is wrong with item maps", addCheck},
      {"new", "Write the project of a service from its item map", addNew},
      {"run", "Bring the device up, then take commands", addRun},
  };
  return table;
}

} // namespace cli
