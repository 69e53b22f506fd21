// Columns that have no effect: items that nothing reaches, groups that nobody judges, encryption of nothing.
#include "Rules.h"

#include <cctype>
#include <unordered_map>

#include <ClientUtils.h>

#include "base/Suggestion.h"

namespace cli::check
{
namespace
{

void lookForUnreachable(const ItemText& item, Report& report)
{
  if (item.has(Column::setter) || !item.has(Column::rootId))
    return;
  if (item.isLocal() && !item.has(Column::dasItem) && !item.isUserData())
    report.add(item.place(Column::setter), "an item without schema and setter: no operation reaches it");
  if (!item.isLocal() && !item.has(Column::dasItem) && !item.has(Column::getter))
    report.add(item.place(Column::dasItem), "an item without column, setter and getter: no operation reaches it");
}

void lookForMissingColumn(const ItemText& item, Report& report)
{
  const bool reachable = item.has(Column::setter) || item.has(Column::getter);
  if (!item.isLocal() && !item.has(Column::dasItem) && reachable && !item.isUserData())
    report.add(item.place(Column::dasItem), "a schema without a column: the item's values are never stored");
}

void lookForMissingSchema(const ItemText& item, Report& report)
{
  if (item.isLocal() && item.has(Column::dasItem))
    report.add(item.place(Column::dasSchema),
               "a column without a schema: the item lives in the local store, and set requests refuse it as unknown");
}

void lookForUnusedIndexNames(const ItemText& item, Report& report)
{
  if (item.isLocal() && item.has(Column::dasIndexName) && !item.has(Column::dasItem))
    report.add(item.place(Column::dasIndexName), "an index column without a schema is never used");
}

bool beginsCamelCase(std::string_view text, std::string_view word)
{
  return text.size() > word.size() && text.substr(0, word.size()) == word &&
         std::isupper(static_cast<unsigned char>(text[word.size()])) != 0;
}

void lookForSwappedCallbacks(const ItemText& item, Report& report)
{
  const bool wrongSetter = beginsCamelCase(item[Column::setter], "get");
  const bool wrongGetter = beginsCamelCase(item[Column::getter], "set");
  if ((wrongSetter && wrongGetter) || (wrongSetter && !item.has(Column::getter)))
    report.add(item.place(Column::setter), "column 7 names the setter, and column 8 the getter");
  else if (wrongGetter && !item.has(Column::setter))
    report.add(item.place(Column::getter), "column 7 names the setter, and column 8 the getter");
}

/// The items of the database by group, and how many schemas they are of.
struct Group
{
  const MapLine* first = nullptr;
  std::size_t items = 0;
  const MapLine* otherSchema = nullptr;
};

std::unordered_map<std::string_view, Group> groupsOf(const MapText& map)
{
  std::unordered_map<std::string_view, Group> groups;
  for (const ItemText& item : itemsOf(map))
  {
    if (item.isLocal() || !item.has(Column::isGroupItem))
      continue;
    Group& group = groups[item[Column::isGroupItem]];
    ++group.items;
    if (group.first == nullptr)
      group.first = &item.line();
    else if (group.otherSchema == nullptr && map.text(*group.first, Column::dasSchema) != item[Column::dasSchema])
      group.otherSchema = &item.line();
  }
  return groups;
}

void lookForGroupsOfOne(const MapText& map, Report& report)
{
  // With more groups than that, nobody wants to compare each with each.
  constexpr std::size_t mostGroups = 200;
  const auto groups = groupsOf(map);
  std::vector<std::string> larger;
  for (const auto& [name, group] : groups)
  {
    if (group.items > 1 && groups.size() <= mostGroups)
      larger.emplace_back(name);
  }
  for (const auto& [name, group] : groups)
  {
    if (group.items != 1)
      continue;
    const std::string hint = didYouMean(std::string(name), larger);
    report.add(group.first->at(Column::isGroupItem),
               "the group " + quoted(name) + " has one item alone" + (hint.empty() ? "" : "; " + hint));
  }
}

void lookForSpreadGroups(const MapText& map, Report& report)
{
  for (const auto& [name, group] : groupsOf(map))
  {
    if (group.otherSchema != nullptr)
      report
          .add(group.otherSchema->at(Column::isGroupItem),
               "the group " + quoted(name) + " has items of several schemas, which are written by several requests")
          .related.push_back({group.first->at(Column::isGroupItem), "an item of another schema"});
  }
}

void lookForGroupsWithoutSetter(const ItemText& item, Report& report)
{
  if (!item.isLocal() && item.has(Column::isGroupItem) && !item.has(Column::setter))
    report.add(item.place(Column::isGroupItem),
               "the item has no setter, through which its values would reach the group");
}

void lookForLocalGroups(const ItemText& item, Report& report)
{
  if (item.isLocal() && item.has(Column::isGroupItem))
    report.add(item.place(Column::isGroupItem),
               "an item without schema belongs to no group: its values are never judged");
}

void lookForLocalEncryption(const ItemText& item, Report& report)
{
  if (item.isEncrypted() && item.isLocal())
    report.add(item.place(Column::dasEncrypted),
               "an item without schema is not encrypted: its value stands in the local store as it is");
}

void lookForPlainSecrets(const ItemText& item, Report& report)
{
  const std::string rootId(item[Column::rootId]);
  // A flag that says something else has findings of its own.
  const bool flagged = !item[Column::dasEncrypted].empty() && item[Column::dasEncrypted] != "\r";
  if (!flagged && !item.isLocal() && item.has(Column::dasItem) && ClientUtils::hidePassword(rootId, "plain") != "plain")
    report.add(item.place(Column::rootId), "the name says that this is a secret, but it is stored in plain text");
}

} // namespace

const std::vector<Rule>& effectRules()
{
  static const std::vector<Rule> rules = {
      {"unreachable-item", Severity::error, false, "No operation reaches an item.",
       "Items without schema are reached by the import from the local store and by change notifications, both through "
       "their setter: without one nothing ever happens to them. Items with a schema are set through their setter, and "
       "read through their getter or from their column: without all three, set requests are refused and get requests "
       "answered with nothing.",
       lookForUnreachable},
      {"schema-without-column", Severity::warning, false,
       "An item with a schema has no column: its values are not stored.",
       "Set requests reach the item's setter, but nothing is written to the database, and nothing is read back: after "
       "a restart the item has its default again. If that is meant, as for an action that is triggered by a set "
       "request, ignore this rule.",
       lookForMissingColumn},
      {"column-without-schema", Severity::error, false, "An item with a column has no schema.",
       "Where a value lives is told by the schema alone. Without one the item lives in the local store: set and get "
       "requests refuse it as unknown, and its column is never read or written.",
       lookForMissingSchema},
      {"index-name-without-schema", Severity::warning, false, "An index column without a schema is never used.",
       "Only requests to the database name index columns. The index value is handed to the callbacks of items without "
       "schema all the same; the name is of no use to them.",
       lookForUnusedIndexNames},
      {"swapped-callbacks", Severity::warning, false, "A getter stands where the setter is named.",
       "Setters and getters are registered and looked up apart, by name: a getter's name in column 7 matches no "
       "setter. The library says nothing about it; the item just cannot be set, and is not imported.",
       lookForSwappedCallbacks},
      {"group-of-one", Severity::warning, false, "A validation group has one item alone.",
       "A group is judged as a whole, by the values of all its items. One item needs no group; probably the name is "
       "misspelt, and the group it was meant for is judged without it.",
       lookForGroupsOfOne},
      {"group-across-schemas", Severity::note, false, "A group has items of several schemas.",
       "The accepted values of a group are written by one request a schema, one after the other. When one of them "
       "fails, the others stay: the database then holds half of a group.",
       lookForSpreadGroups},
      {"group-without-setter", Severity::error, false, "An item of a group has no setter.",
       "Values reach the validator through the setters. An item without one is refused whenever it is set; and as the "
       "last item of a group in a request decides, naming it last keeps the whole group from being judged and stored.",
       lookForGroupsWithoutSetter},
      {"group-on-local-item", Severity::warning, false, "A group of an item without schema has no effect.",
       "Groups are judged when values go to the database. Items without schema are set one by one, whatever group they "
       "name.",
       lookForLocalGroups},
      {"encrypted-local-item", Severity::error, false, "Encryption of an item without schema has no effect.",
       "Encryption belongs to the database. What is in the local store stands there as it is, the flag "
       "notwithstanding. Give the item a schema and a column, or take the flag away and do not keep secrets in it.",
       lookForLocalEncryption},
      {"secret-not-encrypted", Severity::warning, false, "An item with the name of a secret is stored in plain text.",
       "The platform masks the values of items with such names in the log. Column 12 is empty, though, so that the "
       "value stands in the database, in requests and in the security log for everyone to read. Write \"true\" there.",
       lookForPlainSecrets},
  };
  return rules;
}

} // namespace cli::check
