// The table of subcommands: each folder adds a line.
#include "base/Subcommand.h"
#include "check/Check.h"
#include "diff/Diff.h"
#include "explain/Explain.h"
#include "groups/Groups.h"
#include "new/New.h"
#include "replay/Replay.h"
#include "run/Run.h"
#include "test/Test.h"

namespace cli
{

const std::vector<Subcommand>& subcommands()
{
  static const std::vector<Subcommand> table = {
      {"check", "Tell what is wrong with item maps", addCheck},
      {"diff", "Tell what a new item map changes for devices with an old one", addDiff},
      {"explain", "Tell where the value of an item came from", addExplain},
      {"groups", "Show groups, and whether the order of a request matters to them", addGroups},
      {"new", "Write the project of a service from its item map", addNew},
      {"replay", "Run the commands of a transcript again and show the first difference", addReplay},
      {"run", "Bring the device up, then take commands", addRun},
      {"test", "Run all transcripts of a folder as tests", addTest},
  };
  return table;
}

} // namespace cli
