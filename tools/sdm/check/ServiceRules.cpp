// What the trial of a service finds, as rules like those of the map.
#include "Rules.h"

namespace cli::check
{
namespace
{

/// Nothing in a map shows any of it, so no rule looks.
constexpr std::monostate byTrial;

} // namespace

const std::vector<Rule>& serviceRules()
{
  static const std::vector<Rule> rules = {
      {"unresolved-setter", Severity::error, false, "The service registers no setter of the item's name.",
       "Setters are looked up by the name in column 7. Without one the item cannot be set, gets no default and takes "
       "part in no import, and the library says nothing about it. Register the setter, or mend the name.",
       byTrial},
      {"unresolved-getter", Severity::error, false, "The service registers no getter of the item's name.",
       "Getters are looked up by the name in column 8. Without one the item is read from the database, which knows "
       "nothing of what the service has in fact. Register the getter, or empty the column.",
       byTrial},
      {"unused-setter", Severity::warning, false, "The service registers a setter that no item names.",
       "Nobody will ever call it. Probably an item is missing in the map, or names it in another spelling.", byTrial},
      {"unused-getter", Severity::warning, false, "The service registers a getter that no item names.",
       "Nobody will ever call it. Probably an item is missing in the map, or names it in another spelling.", byTrial},
      {"default-refused", Severity::error, false, "A setter refuses its item's default.",
       "A start hands each setter the default of its item, and passes over a refusal with a line in the log: the "
       "service then begins with whatever it had. Mend the default, or let the setter take it.",
       byTrial},
      {"alternative-refused", Severity::error, false, "A setter refuses its item's alternative default.",
       "On units with more than one interface the alternative default takes the place of the default. Refused, it "
       "leaves the service with whatever it had; and only those units show it.",
       byTrial},
      {"default-differs", Severity::warning, false, "A getter answers something else than the default.",
       "The setter took the default, and the getter told another text. The manager compares texts: it takes the item "
       "for changed at each start, publishes it, and a reset of user data writes it again and again. Let both speak of "
       "the value in the same words.",
       byTrial},
      {"alternative-differs", Severity::warning, false, "A getter answers something else than the alternative default.",
       "The setter took the alternative default, and the getter told another text. The manager compares texts, so that "
       "units with more than one interface take the item for changed at each start.",
       byTrial},
      {"group-default-refused", Severity::error, false, "The validator refuses a group of defaults.",
       "Each setter took its default, but together they do not pass. A start logs it and goes on, so that a new device "
       "is in a state that nobody could set. Mend the defaults, or the validator.",
       byTrial},
      {"group-alternative-refused", Severity::error, false, "The validator refuses a group of alternative defaults.",
       "The defaults pass, but not with the alternative ones in the places of those that have one: units with more "
       "than one interface begin in a state that nobody could set.",
       byTrial},
      {"group-item-missing", Severity::error, false, "The validator accepts a group without listing an item of it.",
       "What is written to the database is what getValidGroupItems lists. An item that it leaves out is accepted, and "
       "gone after the next start.",
       byTrial},
      {"group-item-unknown", Severity::warning, false, "The validator lists an item that is not in its group.",
       "What is written is what getValidGroupItems lists for a group. A root id of another group, or of none, is "
       "written unjudged or not at all. Probably it is misspelt.",
       byTrial},
      {"no-validator", Severity::error, false, "The map has a group, and the service no validator.",
       "Groups are judged by the validator that the service hands over at its setup. Without one no group passes, and "
       "its items can never be set. Bring a validator, or empty column 10.",
       byTrial},
      {"setter-throws", Severity::error, false, "A setter throws.",
       "What a callback throws passes through the manager to whoever called it, and ends a start or request half way. "
       "Refuse a value by returning false with a reason.",
       byTrial},
      {"getter-throws", Severity::error, false, "A getter throws.",
       "What a callback throws passes through the manager to whoever called it, and ends a start or request half way. "
       "A getter without a value answers an empty text.",
       byTrial},
      {"validator-throws", Severity::error, false, "The validator throws.",
       "What a callback throws passes through the manager to whoever called it, and ends a start or request half way. "
       "Refuse a group by returning false with a reason.",
       byTrial},
      {"start-throws", Severity::error, false, "The start of the service throws.",
       "The service does not come up with this map. Mostly the reason is one that another finding tells, for a start "
       "calls the setters with all defaults.",
       byTrial},
      {"crash", Severity::error, false, "The service ends the process.",
       "On the device everything ends with it that runs in the process. What was about to be tried is told; the rest "
       "was not tried.",
       byTrial},
      {"hang", Severity::error, false, "The service does not come back.",
       "Callbacks run with the manager's lock held: one that waits for something lets every other operation wait. What "
       "was about to be tried is told; the rest was not tried.",
       byTrial},
  };
  return rules;
}

} // namespace cli::check
