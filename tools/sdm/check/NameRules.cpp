// Names and index values stand in messages as they are: what breaks a message, or means something else in it.
#include "Rules.h"

#include <algorithm>
#include <array>
#include <unordered_map>

#include <utf8.h>

namespace cli::check
{
namespace
{

std::string_view inner(std::string_view text)
{
  const std::size_t first = text.find_first_not_of(" \t");
  return first == std::string_view::npos ? std::string_view()
                                         : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool hasControl(std::string_view text)
{
  return std::any_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; });
}

/// The columns whose texts an item brings into messages as names of elements.
std::vector<Column> elementNames(const ItemText& item)
{
  std::vector<Column> columns;
  for (const Column column : {Column::dasItem, Column::dasIndexName})
  {
    if (item.has(Column::dasSchema) && item.has(column))
      columns.push_back(column);
  }
  return columns;
}

void lookForNames(const MapText& map, Report& report)
{
  std::unordered_map<std::string_view, bool> known;
  for (const ItemText& item : itemsOf(map))
  {
    for (const Column column : elementNames(item))
    {
      const std::string_view name = inner(item[column]);
      if (name.empty() || hasControl(name) || !utf8::is_valid(name.begin(), name.end()) || name.front() == '"')
        continue;
      const auto [place, isNew] = known.try_emplace(name, false);
      if (isNew)
        place->second = isXmlName(name);
      if (!place->second)
        report.add(item.place(column), std::string("the ") + columnName(column) + " " + quoted(name) +
                                           " is no XML name: every message with it is malformed");
    }
  }
}

void lookForReservedNames(const ItemText& item, Report& report)
{
  static constexpr std::array<std::string_view, 5> reserved = {"Schema", "ReasonForMessage", "ResultCols", "Context",
                                                               "Entry"};
  for (const Column column : elementNames(item))
  {
    const std::string_view name = item[column];
    if (std::find(reserved.begin(), reserved.end(), name) != reserved.end())
      report.add(item.place(column),
                 quoted(name) + " is the name of an element of every message, so its value is never read");
  }
}

void lookForSchemas(const ItemText& item, Report& report)
{
  const Span place = item.place(Column::dasSchema);
  const std::string_view text = item.map().text(place);
  const std::size_t bad = text.find_first_of("<&\"");
  // Quotes around the whole are another rule's.
  if (bad == std::string_view::npos || text.front() == '"')
    return;
  const std::uint32_t at = place.begin + static_cast<std::uint32_t>(bad);
  report.add({at, at + 1}, "the schema's name is written into messages as it is, and " + quoted(text.substr(bad, 1)) +
                               " makes them malformed");
}

void lookForIndexValues(const ItemText& item, Report& report)
{
  const Span place = item.place(Column::dasIndexValue);
  const std::size_t bad = item.map().text(place).find_first_of("<&");
  if (bad == std::string_view::npos || item.place(Column::dasSchema).empty())
    return;
  const std::uint32_t at = place.begin + static_cast<std::uint32_t>(bad);
  report.add({at, at + 1}, "the index value is written into messages as it is, and " +
                               quoted(item.map().text({at, at + 1})) + " makes them malformed");
}

void lookForIndexAsColumn(const ItemText& item, Report& report)
{
  if (!item.isLocal() && item.has(Column::dasItem) && item[Column::dasItem] == item[Column::dasIndexName])
    report.add(item.place(Column::dasItem), "the column is the index column of its rows: its value is never read");
}

} // namespace

const std::vector<Rule>& nameRules()
{
  static const std::vector<Rule> rules = {
      {"not-an-xml-name", Severity::error, false, "A column's name is no XML name, and breaks every message with it.",
       "The names of columns and index columns become names of XML elements as they stand. A blank, a leading digit, a "
       "slash or a bracket makes the message malformed: the database refuses the whole request, with all other changes "
       "of that schema. Names begin with a letter or _ and go on with letters, digits, dots, hyphens and _.",
       lookForNames},
      {"reserved-name", Severity::error, false, "A column is named like an element of every message.",
       "Schema, Context and Entry frame the rows of a message, ReasonForMessage tells its kind, and ResultCols names "
       "what is asked for. A column of such a name is never taken for one: its value is never imported, and as "
       "ReasonForMessage it makes the reply a failure.",
       lookForReservedNames},
      {"schema-breaks-request", Severity::error, false, "A schema's name makes messages malformed.",
       "The schema's name is written between double quotes, as it stands: a double quote, < or & in it makes every "
       "request about the schema malformed. It need not be an XML name otherwise.",
       lookForSchemas},
      {"index-value-breaks-request", Severity::error, false, "An index value makes messages malformed.",
       "Values of items are escaped on their way to the database, but index values are written as they stand: < or & "
       "in one makes the request malformed, and the database refuses it with all other changes of that schema.",
       lookForIndexValues},
      {"column-is-index", Severity::error, false, "An item's column is the index column of its rows.",
       "In replies, the element of the index column tells which row the columns behind it belong to. An item of that "
       "column is therefore never imported, and setting it would move the row.",
       lookForIndexAsColumn},
  };
  return rules;
}

} // namespace cli::check
