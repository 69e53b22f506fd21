// What other kinds of files have and an item map has not: comments, a heading, quotes.
#include "Rules.h"

#include "base/Text.h"

namespace cli::check
{
namespace
{

using Kind = MapLine::Kind;

void lookForComments(const MapText& map, Report& report)
{
  for (const MapLine& line : map.lines())
  {
    if (line.kind == Kind::item || !isOrdinary(map, line) || !beginsComment(map.text(line.place)))
      continue;
    const bool logged = line.kind == Kind::tooFewColumns;
    report.add(line.place, std::string("an item map has no comments; this line is ") +
                               (logged ? "reported in the log at every start" : "passed over for being so short"));
  }
}

void lookForCommentedItems(const ItemText& item, Report& report)
{
  const std::string_view rootId = item[Column::rootId];
  if (beginsComment(rootId))
    report.add(item.place(Column::rootId),
               "the line is not commented out: it loads as item " + quoted(rootId) + ", and its setter runs");
}

bool isHeader(const ItemText& item)
{
  const std::string rootId = lowered(item[Column::rootId]);
  const std::string schema = lowered(item[Column::dasSchema]);
  const std::string column = lowered(item[Column::dasItem]);
  return (rootId == "rootid" || rootId == "root id" || rootId == "root_id" || rootId == "id") &&
         (schema == "dasschema" || schema == "schema" || schema == "das schema" || column == "dasitem" ||
          column == "column");
}

void lookForHeader(const ItemText& item, Report& report)
{
  if (!isHeader(item))
    return;
  const std::uint32_t feed = item.line().place.end < item.map().bytes().size() ? 1 : 0;
  report.add(item.line().place, "the names of the columns load as an item; a map has no heading")
      .fix.push_back({{item.line().place.begin, item.line().place.end + feed}, ""});
}

void lookForQuotes(const ItemText& item, Report& report)
{
  for (std::size_t i = 0; i < columnCount; ++i)
  {
    const std::string_view text = item.map().text(item.line().columns[i]);
    if (text.empty() || text.front() != '"')
      continue;
    const bool closed = !isOpenQuote(text);
    report.add(item.line().columns[i], std::string("there is no quoting in an item map: the quotes belong to the ") +
                                           columnName(static_cast<Column>(i)) +
                                           (closed ? "" : ", and commas inside them separate columns"));
  }
}

} // namespace

const std::vector<Rule>& notationRules()
{
  static const std::vector<Rule> rules = {
      {"comment-line", Severity::warning, false, "An item map has no comments.",
       "A line that begins with # is a line like any other: with fewer than eleven commas it is skipped and leaves a "
       "failure in the log at every start, which hides real ones. Keep comments in a file beside the map.",
       lookForComments},
      {"commented-out-item", Severity::error, false, "A line that was meant to be commented out is loaded.",
       "There are no comments: the item loads under a root id that begins with #. At start-up its setter is called "
       "with the default, its schema is read, and it may take the place of the item that was to replace it. Delete the "
       "line.",
       lookForCommentedItems},
      {"header-line", Severity::error, true, "The names of the columns are loaded as an item.",
       "A map has no heading. The library makes an item of it, and asks the database for a schema of the name that "
       "stands in column 2. --fix deletes the line.",
       lookForHeader},
      {"quoted-field", Severity::error, false, "There is no quoting: quotes become part of the text.",
       "Spreadsheets put quotes around columns when they save a file. The library knows no quoting: names with quotes "
       "are found by nobody, defaults reach the setter with quotes around them, and commas inside quotes separate "
       "columns all the same.",
       lookForQuotes},
  };
  return rules;
}

} // namespace cli::check
