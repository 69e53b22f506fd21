// Defaults, encryption, groups and user data.
#include "RulesBySubject.h"

namespace cli::diff
{
namespace
{

constexpr const char* alternativeStored =
    "the value is kept; on units with 2, 3 or 4 interfaces the setter gets the other "
    "default before it";
constexpr const char* alternativeNotStored = "units with 2, 3 or 4 interfaces start with the other default";
constexpr const char* alternatives =
    "Units with 2, 3 or 4 interfaces take the alternative default in the place of the default, when it is not empty. "
    "Devices that never stored a value follow the change at their next start, without a word in the log.";
constexpr const char* groupStored =
    "the value is kept, and judged with its new company at the next start; a refused group "
    "keeps its values all the same";
constexpr const char* groupNotStored = "the default is judged with its new company";
constexpr const char* groups = "The items of a group are judged together by the service's validator: at a start, where "
                               "a refusal is only logged, and "
                               "at each set request, where it refuses the values of the whole group. Values that were "
                               "accepted by the old grouping may "
                               "be refused by the new one, and then no member can be set alone any more.";

} // namespace

std::vector<Rule> valueRules()
{
  return {
      {"default-changed", Severity::warning, "default-changed", "The default of an item changed.",
       "the value is kept; the setter gets the new default before it",
       "the item changes from the old default to the new one at the next start",
       "A default is never stored: whoever left the item alone gets the new one with the new map, without a word in "
       "the "
       "log. For user data it is also what a reset puts back. The setter may refuse it, which is not logged."},
      {"alternative-added", Severity::warning, "alternative-removed", "An item got an alternative default.",
       alternativeStored, alternativeNotStored, alternatives},
      {"alternative-removed", Severity::warning, "alternative-added", "An item lost its alternative default.",
       alternativeStored, alternativeNotStored, alternatives},
      {"alternative-changed", Severity::warning, "alternative-changed", "The alternative default of an item changed.",
       alternativeStored, alternativeNotStored, alternatives},
      {"encryption-switched-on", Severity::error, "encryption-switched-off", "The value of an item is encrypted now.",
       "the database holds plain text, which cannot be decoded: the log says so at level 2, and the setter gets what "
       "the "
       "decryption leaves",
       "what is set from now on is stored encrypted",
       "The flag of the map says how a stored value is read; nothing marks the value itself. What was stored in plain "
       "text "
       "is taken for cipher text and is lost, until a set request stores the value again. A migration has to encrypt "
       "it."},
      {"encryption-switched-off", Severity::error, "encryption-switched-on",
       "The value of an item is not encrypted any more.",
       "the setter gets the cipher text as it stands, and may take it for a value",
       "what is set from now on is stored in plain text",
       "The flag of the map says how a stored value is read; nothing marks the value itself. What was stored encrypted "
       "is "
       "handed on as it is, and from now on the database, requests and the security log have the value in plain text. "
       "The "
       "flag is exactly \"true\": a blank more, or the carriage return of another line end, switches it off as well."},
      {"group-joined", Severity::warning, "group-left", "An item joined a validation group.", groupStored,
       groupNotStored, groups},
      {"group-left", Severity::warning, "group-joined", "An item left its validation group.",
       "the value is kept, and judged by nobody but its setter", "the default is judged by nobody but its setter",
       groups},
      {"group-changed", Severity::warning, "group-changed", "An item went over to another validation group.",
       groupStored, groupNotStored, groups},
      {"user-data-on", Severity::warning, "user-data-off", "An item is user data now.",
       "the value is kept at a start; a reset of user data puts the default back from now on",
       "nothing changes until a value is set",
       "setDefaultUserData resets the items that the map marks, and reloadUserData reads them again. Values that used "
       "to "
       "survive a reset do not any more."},
      {"user-data-off", Severity::warning, "user-data-on", "An item is not user data any more.",
       "the value is kept, and survives a reset of user data from now on", "nothing changes",
       "setDefaultUserData leaves the item alone from now on: what somebody typed in stays on a device that is reset "
       "for "
       "its next owner."},
  };
}

} // namespace cli::diff
