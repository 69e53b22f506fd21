// Lines that the library cuts or skips, or that have too many commas.
#include "Rules.h"

#include <algorithm>

#include "base/Shown.h"

namespace cli::check
{
namespace
{

using Kind = MapLine::Kind;

bool isCut(const MapText& map, const MapLine& line)
{
  return line.place.size() == sdm::ItemMapFile::longestLine && line.place.end < map.bytes().size() &&
         map.bytes()[line.place.end] != '\n';
}

bool isBlank(std::string_view text)
{
  return text.find_first_not_of(" \t\r") == std::string_view::npos;
}

std::string fate(const MapText& map, const MapLine& line)
{
  if (line.kind == Kind::item)
    return "read as item " + quoted(map.text(line, Column::rootId));
  return line.kind == Kind::passedOver ? "passed over" : "skipped";
}

void lookForLongLines(const MapText& map, Report& report)
{
  const auto& lines = map.lines();
  for (std::size_t i = 0; i + 1 < lines.size(); ++i)
  {
    if (lines[i].continued || !isCut(map, lines[i]))
      continue;
    const std::uint32_t whole = map.wholeLine(lines[i].place.begin).size();
    report.add({lines[i].place.end, lines[i + 1].place.end},
               "the line has " + std::to_string(whole) + " bytes and is cut after 500: the first part is " +
                   fate(map, lines[i]) + ", what follows is " + fate(map, lines[i + 1]));
  }
}

void lookForNulBytes(const MapText& map, Report& report)
{
  if (isUtf16(map))
    return;
  for (const MapLine& line : map.lines())
  {
    if (line.nul)
      report.add({*line.nul, *line.nul + 1},
                 "the line ends at this NUL byte: what stands behind it is lost, and the line is " + fate(map, line));
  }
}

void lookForShortLines(const MapText& map, Report& report)
{
  for (const MapLine& line : map.lines())
  {
    const std::string_view text = map.text(line.place);
    if (line.kind == Kind::passedOver && isOrdinary(map, line) && !isBlank(text) && !beginsComment(text))
      report.add(line.place, "a line of " + counted(text.size(), "byte") + " is passed over in silence");
  }
}

std::string separatorHint(std::string_view text)
{
  for (const char separator : {';', '\t', '|'})
  {
    if (static_cast<std::size_t>(std::count(text.begin(), text.end(), separator)) + 1 >= columnCount)
      return "; columns are separated by commas alone";
  }
  return "; columns at the end have to be there, too, even when they are empty";
}

void lookForMissingCommas(const MapText& map, Report& report)
{
  for (const MapLine& line : map.lines())
  {
    const std::string_view text = map.text(line.place);
    if (line.kind != Kind::tooFewColumns || !isOrdinary(map, line) || beginsComment(text))
      continue;
    const auto commas = static_cast<std::size_t>(std::count(text.begin(), text.end(), ','));
    report.add(line.place, "the line has " + counted(commas + 1, "column") + " instead of " +
                               std::to_string(columnCount) + " and is skipped" + separatorHint(text));
  }
}

bool hasContent(std::string_view surplus)
{
  return surplus.find_first_not_of(", \t\r") != std::string_view::npos;
}

bool hasSurplus(const ItemText& item)
{
  const std::string_view surplus = item.map().text(item.line().surplus);
  return !surplus.empty() && surplus.front() == ',' && hasContent(surplus);
}

void lookForSurplus(const ItemText& item, Report& report)
{
  if (hasSurplus(item))
    report.add(item.line().surplus,
               "text behind the twelfth comma is ignored: " + quoted(item.map().text(item.line().surplus).substr(1)));
}

void lookForTrailingCommas(const ItemText& item, Report& report)
{
  const std::string_view surplus = item.map().text(item.line().surplus);
  if (surplus.empty() || surplus.front() != ',' || hasContent(surplus))
    return;
  const auto commas = static_cast<std::size_t>(std::count(surplus.begin(), surplus.end(), ','));
  const Span place{item.line().surplus.begin, item.line().surplus.end - (surplus.back() == '\r' ? 1U : 0U)};
  // A carriage return goes as well: without the commas it would spoil the column before them.
  report.add(place, counted(commas, "comma") + " too many at the end of the line")
      .fix.push_back({item.line().surplus, ""});
}

} // namespace

bool beginsComment(std::string_view text)
{
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos)
    return false;
  text.remove_prefix(first);
  return text.front() == '#' || text.front() == ';' || text.substr(0, 2) == "//";
}

bool isOrdinary(const MapText& map, const MapLine& line)
{
  return !line.continued && !line.nul && !isCut(map, line);
}

bool isOpenQuote(std::string_view text)
{
  return !text.empty() && text.front() == '"' && (text.size() == 1 || text.back() != '"');
}

bool hasShiftedColumns(const ItemText& item)
{
  const auto& columns = item.line().columns;
  return hasSurplus(item) || std::any_of(columns.begin(), columns.end(),
                                         [&](const Span& column) { return isOpenQuote(item.map().text(column)); });
}

const std::vector<Rule>& lineRules()
{
  static const std::vector<Rule> rules = {
      {"line-too-long", Severity::error, false, "A line of more than 500 bytes is cut.",
       "The library reads 500 bytes of a line; what is beyond them is read as a line of its own. The first part lacks "
       "its last columns (a default that is cut, encryption that is not turned on) or is skipped; the rest is skipped, "
       "or loads as an item that nobody wrote when it has eleven commas. Shorten the default or the names. Characters "
       "outside ASCII take two to four bytes each.",
       lookForLongLines},
      {"nul-byte", Severity::error, false, "A line ends at its first NUL byte.",
       "Lines are read as texts of C, which end at a NUL byte: the columns behind it are lost. Such bytes come from "
       "files that were written in UTF-16, or cut off by a full disk.",
       lookForNulBytes},
      {"line-passed-over", Severity::warning, false, "A line of nine bytes or fewer is passed over in silence.",
       "Lines as short as that cannot hold eleven commas, so the library passes over them without a word in the log. "
       "Probably a piece of another line stands here: was one broken in two?",
       lookForShortLines},
      {"too-few-columns", Severity::error, false, "A line with fewer than eleven commas is skipped.",
       "Every item has twelve columns, the empty ones at its end included. The library skips the line and says so in "
       "the log at level 2, with the line's number; the item does not exist: requests for it are refused as unknown. "
       "Which comma is missing only the author can tell, so there is no automatic fix.",
       lookForMissingCommas},
      {"too-many-columns", Severity::error, false, "Text behind the twelfth comma is ignored.",
       "Columns are counted by commas, and there is no way to write a comma inside one: a default with a comma in it "
       "moves all columns behind it, the setter's name becomes part of the default, and the item works no more. The "
       "library ignores what is behind the twelfth comma without a word.",
       lookForSurplus},
      {"trailing-commas", Severity::warning, true, "There are more commas than columns at the end of a line.",
       "The library ignores them. They do no harm, but hide it when a column is moved. --fix takes them away.",
       lookForTrailingCommas},
  };
  return rules;
}

} // namespace cli::check
