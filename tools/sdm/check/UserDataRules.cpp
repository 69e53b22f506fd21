// User data: what keeps it from being put back to defaults, or from being read again.
#include "Rules.h"

namespace cli::check
{
namespace
{

bool isStoredUserData(const ItemText& item)
{
  return item.isUserData() && !item.isLocal();
}

void lookForLocalUserData(const ItemText& item, Report& report)
{
  if (item.isUserData() && item.isLocal())
    report.add(item.place(Column::userData),
               "user data is reset and reloaded through the database, and this item has no schema");
}

void lookForMissingGetter(const ItemText& item, Report& report)
{
  if (isStoredUserData(item) && !item.has(Column::getter))
    report.add(item.place(Column::getter), "user data without a getter is never put back to its default");
}

void lookForMissingSetter(const ItemText& item, Report& report)
{
  if (isStoredUserData(item) && !item.has(Column::setter))
    report.add(item.place(Column::setter),
               "user data without a setter: the service does not learn of resets and reloads");
}

void lookForMissingColumn(const ItemText& item, Report& report)
{
  if (isStoredUserData(item) && !item.has(Column::dasItem))
    report.add(item.place(Column::dasItem), "user data without a column makes the request of a reset malformed");
}

void lookForRows(const ItemText& item, Report& report)
{
  if (isStoredUserData(item) && item.has(Column::dasIndexName))
    report.add(item.place(Column::userData),
               "a reload of user data reads the first row for every index value, this one as well");
}

/// Whether the column's name stands in a reply somewhere before its own element.
bool standsEarlier(const ItemText& item)
{
  // The index column as an item has more to it, which is told elsewhere.
  if (!item.has(Column::dasItem) || item[Column::dasItem] == item[Column::dasIndexName])
    return false;
  std::string before = R"(<?xml version="1.0" encoding="utf-8"?><Schema name=")";
  before.append(item[Column::dasSchema]).append(R"("><ReasonForMessage>read_response</ReasonForMessage>)");
  if (item.has(Column::dasIndexName))
    before.append("<Entry><").append(item[Column::dasIndexName]).append(">").append(item[Column::dasIndexValue]);
  return before.find(item[Column::dasItem]) != std::string::npos;
}

std::string ambiguity(const ItemText& item)
{
  return quoted(item[Column::dasItem]) + " stands in replies about schema " + quoted(item[Column::dasSchema]) +
         " before the column's own element";
}

void lookForAmbiguousColumns(const ItemText& item, Report& report)
{
  if (isStoredUserData(item) && standsEarlier(item))
    report.add(item.place(Column::dasItem), ambiguity(item) + ": a reload takes the wrong text");
}

void lookForAmbiguousImports(const ItemText& item, Report& report)
{
  if (!item.isLocal() && !item.isUserData() && standsEarlier(item))
    report.add(item.place(Column::dasItem), ambiguity(item) + ": importItemFromDAS takes the wrong text");
}

} // namespace

const std::vector<Rule>& userDataRules()
{
  static const std::vector<Rule> rules = {
      {"user-data-on-local-item", Severity::error, false,
       "User data without a schema can be neither reset nor reloaded.",
       "setDefaultUserData sends one request an item to the database, and reloadUserData reads the items from there. "
       "For an item without schema the request is malformed, and the reload logs an unknown item at level 2.",
       lookForLocalUserData},
      {"user-data-without-getter", Severity::error, false, "User data without a getter is never reset.",
       "setDefaultUserData compares what the getter tells with the default, and puts back what differs. An item "
       "without a getter is left as it is, without a word: the user's data survive the reset.",
       lookForMissingGetter},
      {"user-data-without-setter", Severity::error, false,
       "The service does not learn of resets and reloads of an item.",
       "A reset writes the default to the database and calls the setter; a reload reads the database and calls the "
       "setter. Without one the service goes on with the old value, and reloads refuse the item.",
       lookForMissingSetter},
      {"user-data-without-column", Severity::error, false, "User data without a column breaks the request of a reset.",
       "The request that puts the default back names the column as an XML element; with an empty name it is malformed, "
       "and the reload cuts its value out of the reply at a place that means nothing.",
       lookForMissingColumn},
      {"user-data-indexed", Severity::error, false, "A reload of user data does not tell rows apart.",
       "reloadUserData reads each item with importItemFromDAS, which asks for the whole column and takes the first "
       "value of the reply, whatever the item's index value. After a reload all rows have the value of the first one, "
       "and it is written back to the database.",
       lookForRows},
      {"ambiguous-column", Severity::error, false, "A reload finds a column's name too early in the reply.",
       "reloadUserData cuts the value out of the reply behind the first place where the column's name stands, be it a "
       "part of the schema's name or of another word: name, Schema, version, Reason, utf-8. The setter gets that piece "
       "of text instead of the value, and it is written back to the database. Rename the column.",
       lookForAmbiguousColumns},
      {"ambiguous-import", Severity::note, false, "importItemFromDAS finds a column's name too early in the reply.",
       "importItemFromDAS cuts the value out of the reply behind the first place where the column's name stands, be it "
       "a part of the schema's name or of another word. All other operations read the reply as XML and are not "
       "concerned; this item is no user data, so that only a call of importItemFromDAS for it goes wrong.",
       lookForAmbiguousImports},
  };
  return rules;
}

} // namespace cli::check
