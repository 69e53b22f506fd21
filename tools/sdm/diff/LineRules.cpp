// Lines of which another one counts, and columns without effect.
#include "RulesBySubject.h"

namespace cli::diff
{
namespace
{

constexpr const char* startLines = "Of several lines with one root id, requests find the last one alone. A start knows "
                                   "no such rule: the default of each "
                                   "line goes through its setter, and so does what its cell holds. A line without a "
                                   "root id takes part in the same way. "
                                   "`sdm check` calls such lines errors (duplicate-root-id, no-root-id).";

} // namespace

std::vector<Rule> lineRules()
{
  return {
      {"duplicate-winner-changed", Severity::warning, "duplicate-winner-changed",
       "Of several lines with one root id, another one counts.",
       "the value of the line that counts now is the one that requests change and that get requests answer",
       "the default of the line that counts now is the last one that its setter gets",
       "Of several lines with one root id the last one in the file is found by requests. Another order, one line more "
       "or "
       "one less makes another line the last. What differs between the two lines is told by rules of its own. Keep one "
       "line of each root id."},
      {"start-line-added", Severity::warning, "start-line-removed",
       "There is one more line that takes part in a start alone.",
       "what the cell of the line holds goes through its setter at a start",
       "its default goes through its setter at a start", startLines},
      {"start-line-removed", Severity::warning, "start-line-added", "A line that took part in a start alone is gone.",
       "what the cell of the line holds does not go through its setter any more",
       "its default does not go through its setter any more", startLines},
      {"local-index-changed", Severity::warning, "local-index-changed",
       "The callbacks of a local item get another index value.",
       "the value is kept, and handed to the setter with the new index value, unless the root id ends in a number",
       "the callbacks get the new index value",
       "An item without schema has no row, but its callbacks get its index value, so that one callback can serve many "
       "items. "
       "During the import of a start, a number behind the last hyphen of the root id takes its place."},
      {"unused-column-changed", Severity::note, "unused-column-changed",
       "A column changed that has no effect on an item of the local store.", "nothing changes", "nothing changes",
       "The column, index column, group and encryption flag of an item without schema are read and never used. The "
       "change is "
       "told because its author will have expected something of it."},
  };
}

} // namespace cli::diff
