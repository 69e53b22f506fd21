// What becomes of items of the local management store, where it is something else than in the database: no start hands
// them a default, and no set or get request finds them.
#include "Changes.h"

#include <algorithm>
#include <array>

namespace cli::diff
{
namespace
{

struct LocalEffects
{
  std::string_view rule;
  const char* stored;
  const char* notStored;
};

constexpr const char* noDefault = "nothing changes: no start uses a default of an item of the local store";

constexpr std::array<LocalEffects, 10> effects = {{
    {"item-added", "what the local store holds under the root id is handed to the setter at a start",
     "the setter gets an empty text at a start"},
    {"item-removed",
     "the value stays in the local store, and nothing reads it; notifications of its changes are refused as unknown",
     "notifications of its changes are refused as unknown"},
    {"default-changed",
     "the value is kept; nothing but a reset of user data uses the default of an item of the local store", noDefault},
    {"alternative-added", noDefault, noDefault},
    {"alternative-removed", noDefault, noDefault},
    {"alternative-changed", noDefault, noDefault},
    {"setter-added", "the value is handed to the setter at a start, and whenever somebody changes it",
     "the setter gets an empty text at a start"},
    {"setter-removed", "the value stays in the local store, and reaches nobody", "nothing changes for the service"},
    {"setter-renamed", "the value is handed to the other setter at a start", "the other setter gets an empty text"},
    {"user-data-on",
     "the value is kept at a start; a reset of user data publishes the default, if the item has a getter",
     "a reset of user data publishes the default, if the item has a getter"},
}};

} // namespace

void useLocalEffects(Change& change)
{
  const auto* const found = std::find_if(effects.begin(), effects.end(),
                                         [&](const LocalEffects& each) { return each.rule == change.rule->id; });
  if (found == effects.end())
    return;
  change.stored = found->stored;
  change.notStored = found->notStored;
}

} // namespace cli::diff
