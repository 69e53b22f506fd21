// Defaults and alternative defaults: those that a message cannot carry, and those that nobody ever sees.
#include "Rules.h"

#include "base/Text.h"

#include <algorithm>

namespace cli::check
{
namespace
{

/// Whether setDefaultUserData writes the item's default as it stands.
bool isWrittenUnescaped(const ItemText& item)
{
  return item.isUserData() && !item.isLocal() && !item.isEncrypted();
}

void lookForUnescaped(const ItemText& item, Report& report)
{
  if (!isWrittenUnescaped(item))
    return;
  for (const Column column : {Column::defaultValue, Column::alternativeDefault})
  {
    const std::string_view text = item[column];
    const std::size_t bad = std::min(text.find_first_of("<&"), text.find("]]>"));
    if (bad == std::string_view::npos)
      continue;
    const std::uint32_t at = item.place(column).begin + static_cast<std::uint32_t>(bad);
    report.add({at, at + 1}, std::string("a reset writes the ") + columnName(column) + " as it is, and " +
                                 quoted(text.substr(bad, text[bad] == ']' ? 3 : 1)) + " corrupts the request");
  }
}

/// Whether any operation of the library makes use of the item's default.
bool usesDefault(const ItemText& item)
{
  const bool pushed = !item.isLocal() && item.has(Column::setter);
  const bool answered = !item.isLocal() && item.has(Column::dasItem) && !item.has(Column::getter);
  const bool reset = item.isUserData() && item.has(Column::getter);
  return pushed || answered || reset;
}

bool isFlag(std::string_view text)
{
  const std::string word = lowered(text);
  return word == "true" || word == "false";
}

/// The flag of column 12, one column too early.
bool isMovedFlag(const ItemText& item)
{
  const std::string_view flag = item[Column::dasEncrypted];
  return item[Column::alternativeDefault] == "true" && (flag.empty() || flag == "\r") &&
         !isFlag(item[Column::defaultValue]);
}

void lookForEqualAlternatives(const ItemText& item, Report& report)
{
  if (item.has(Column::alternativeDefault) && usesDefault(item) &&
      item[Column::alternativeDefault] == item[Column::defaultValue])
    report.add(item.place(Column::alternativeDefault), "the alternative default is the same as the default")
        .fix.push_back({item.place(Column::alternativeDefault), ""});
}

void lookForUnusedAlternatives(const ItemText& item, Report& report)
{
  if (item.has(Column::alternativeDefault) && !usesDefault(item) && !isMovedFlag(item))
    report.add(item.place(Column::alternativeDefault),
               "the alternative default is never used, for nothing uses a default of this item");
}

void lookForMovedFlags(const ItemText& item, Report& report)
{
  if (isMovedFlag(item))
    report.add(item.place(Column::alternativeDefault),
               "\"true\" is an alternative default here, in column 11; encryption is turned on by column 12");
}

void lookForSecretDefaults(const ItemText& item, Report& report)
{
  for (const Column column : {Column::defaultValue, Column::alternativeDefault})
  {
    if (item.isEncrypted() && item.has(column))
      report.add(item.place(column),
                 std::string("the ") + columnName(column) + " of an encrypted item stands here for everyone to read");
  }
}

} // namespace

const std::vector<Rule>& valueRules()
{
  static const std::vector<Rule> rules = {
      {"default-not-escaped", Severity::error, false, "A reset of user data corrupts a default.",
       "setDefaultUserData writes defaults into its request as they stand, without escaping: < or & makes the request "
       "malformed, so that the database keeps the user's value while the service goes on with the default; an entity "
       "such as &amp; is stored decoded. Encrypted defaults are not concerned.",
       lookForUnescaped},
      {"alternative-equals-default", Severity::warning, true, "An alternative default is the same as the default.",
       "Units with 2, 3 or 4 interfaces take the alternative default, all others the default: here that makes no "
       "difference. --fix empties the column.",
       lookForEqualAlternatives},
      {"alternative-never-used", Severity::warning, false, "An alternative default is never used.",
       "Defaults are handed to the setters of items with a schema, answered for items without getter when the database "
       "has no value, and put back for user data. None of that happens to this item, so that its alternative default "
       "has no effect on any unit.",
       lookForUnusedAlternatives},
      {"flag-in-alternative", Severity::warning, false, "The encryption flag stands in the column before its own.",
       "Column 11 is the alternative default, column 12 turns encryption on. With \"true\" in column 11 and nothing in "
       "column 12 the value is stored in plain text, and units with 2, 3 or 4 interfaces start with the text \"true\".",
       lookForMovedFlags},
      {"default-of-secret", Severity::note, false, "The default of an encrypted item stands in the map in plain text.",
       "The item's value is encrypted in the database, but every unit starts with the same one, and it can be read in "
       "the map.",
       lookForSecretDefaults},
  };
  return rules;
}

} // namespace cli::check
