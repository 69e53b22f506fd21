// Setters and getters.
#include "RulesBySubject.h"

namespace cli::diff
{
namespace
{

constexpr const char* names =
    "Callbacks are looked up by the name that the service registers them with, once, when the map is read. A name that "
    "nobody registered is the same as none, without a word in the log: `sdm check --service` tells.";

} // namespace

std::vector<Rule> callbackRules()
{
  return {
      {"setter-added", Severity::warning, "setter-removed", "An item got a setter.",
       "the value, also one that an earlier map left, is handed to the setter at a start",
       "the default is handed to the setter at a start, and the item can be set", names},
      {"setter-removed", Severity::error, "setter-added", "An item lost its setter.",
       "the value stays where it is, and no start reads it; requests to set the item are refused",
       "the default reaches nobody; requests to set the item are refused", names},
      {"setter-renamed", Severity::warning, "setter-renamed", "An item has another setter.",
       "the value is handed to the other setter, which may refuse it", "the default is handed to the other setter",
       names},
      {"getter-added", Severity::note, "getter-removed", "An item got a getter.",
       "get requests are answered by the service instead of the database, and changes are published",
       "get requests are answered by the service", names},
      {"getter-removed", Severity::warning, "getter-added", "An item lost its getter.",
       "get requests are answered by the database; changes are not published any more",
       "get requests are answered with the default; a reset of user data passes the item over", names},
      {"getter-renamed", Severity::warning, "getter-renamed", "An item has another getter.",
       "the value is kept; get requests are answered by the other getter",
       "get requests are answered by the other getter", names},
  };
}

} // namespace cli::diff
