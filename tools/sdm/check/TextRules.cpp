// Bytes and blanks in the columns, and the flags: what looks right and is not.
#include "Rules.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <optional>

#include <utf8.h>

namespace cli::check
{
namespace
{

bool isDefault(Column column)
{
  return column == Column::defaultValue || column == Column::alternativeDefault;
}

struct ColumnPlace
{
  Column column;
  Span place;
};

std::array<ColumnPlace, columnCount> columnsOf(const ItemText& item)
{
  std::array<ColumnPlace, columnCount> places;
  for (std::size_t i = 0; i < columnCount; ++i)
    places[i] = {static_cast<Column>(i), withoutReturn(item.map(), item.line().columns[i])};
  return places;
}

void removeEnds(Finding& finding, const Span& whole, const Span& kept)
{
  if (whole.begin < kept.begin)
    finding.fix.push_back({{whole.begin, kept.begin}, ""});
  if (kept.end < whole.end)
    finding.fix.push_back({{kept.end, whole.end}, ""});
}

void lookForBlanksAround(const ItemText& item, Report& report)
{
  for (const auto& [column, place] : columnsOf(item))
  {
    const Span kept = trimmed(item.map(), place);
    if (isDefault(column) || column == Column::userData || column == Column::dasEncrypted || kept.empty() ||
        kept.size() == place.size())
      continue;
    const Span blanks = kept.begin > place.begin ? Span{place.begin, kept.begin} : Span{kept.end, place.end};
    Finding& finding = report.add(blanks, std::string("blanks belong to the ") + columnName(column) + ", which is " +
                                              quoted(item.map().text(place)));
    removeEnds(finding, place, kept);
  }
}

void lookForBlanksAroundDefaults(const ItemText& item, Report& report)
{
  for (const auto& [column, place] : columnsOf(item))
  {
    if (isDefault(column) && trimmed(item.map(), place).size() != place.size())
      report.add(place, std::string("blanks belong to the ") + columnName(column) + ", which is " +
                            quoted(item.map().text(place)));
  }
}

std::string effectOfBlanks(Column column)
{
  if (column == Column::userData)
    return "marks the item as user data";
  if (column == Column::isGroupItem)
    return "puts the item into a group of that name";
  if (column == Column::dasSchema)
    return "puts the item into the database, into a schema of that name";
  return std::string("is not empty: it is the ") + columnName(column);
}

void lookForBlankFields(const ItemText& item, Report& report)
{
  for (const auto& [column, place] : columnsOf(item))
  {
    if (isDefault(column) || place.empty() || !trimmed(item.map(), place).empty())
      continue;
    report.add(place, "a column of nothing but blanks " + effectOfBlanks(column)).fix.push_back({place, ""});
  }
}

void lookForBrokenUtf8(const MapText& map, Report& report)
{
  for (const MapLine& line : map.lines())
  {
    // A character that is cut in two belongs to the cut.
    if (line.continued || line.kind != MapLine::Kind::item)
      continue;
    const Span all{line.place.begin, line.at(Column::dasEncrypted).end};
    std::string_view rest = map.text(all);
    rest.remove_prefix(static_cast<std::size_t>(utf8::find_invalid(rest.begin(), rest.end()) - rest.begin()));
    const std::uint32_t place = all.end - static_cast<std::uint32_t>(rest.size());
    if (!rest.empty() && !(all.end == line.place.end && all.size() == sdm::ItemMapFile::longestLine && rest.size() < 4))
      report.add({place, place + 1}, "this byte is no UTF-8, as which messages to the database are sent");
  }
}

/// The first control character but blanks, and characters that XML has no place for.
std::optional<std::size_t> controlIn(std::string_view text)
{
  for (std::size_t i = 0; i < text.size(); ++i)
  {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool last = text.substr(i, 3) == "\xef\xbf\xbe" || text.substr(i, 3) == "\xef\xbf\xbf";
    if ((byte < 0x20 && byte != '\t') || byte == 0x7f || last)
      return i;
  }
  return std::nullopt;
}

void lookForControls(const ItemText& item, Report& report)
{
  for (const auto& [column, place] : columnsOf(item))
  {
    const auto found = controlIn(item.map().text(place));
    if (!found)
      continue;
    const std::uint32_t at = place.begin + static_cast<std::uint32_t>(*found);
    report.add({at, at + 1}, std::string("a control character in the ") + columnName(column) +
                                 ": messages to the database cannot carry it as it is");
  }
}

void lookForReturns(const ItemText& item, Report& report)
{
  const Span flag = item.place(Column::dasEncrypted);
  if (item.map().text(flag) != "true\r")
    return;
  const Span end{flag.end - 1, flag.end};
  report
      .add(end,
           "the carriage return belongs to the flag, which thus is not \"true\": the value is stored in plain text")
      .fix.push_back({end, ""});
}

template <std::size_t n>
bool isOneOf(std::string_view text, const std::array<std::string_view, n>& words)
{
  return std::find(words.begin(), words.end(), lowered(text)) != words.end();
}

constexpr std::array<std::string_view, 8> agreeing = {"true", "1", "yes", "y", "on", "t", "x", "encrypted"};
constexpr std::array<std::string_view, 7> denying = {"false", "0", "no", "n", "off", "f", "none"};

void lookForFlags(const ItemText& item, Report& report)
{
  const Span whole = withoutReturn(item.map(), item.place(Column::dasEncrypted));
  const std::string_view word = item.map().text(trimmed(item.map(), whole));
  if (item.map().text(whole) == "true" || word.empty() || isOneOf(word, denying))
    return;
  Finding& finding =
      report.add(whole, quoted(item.map().text(whole)) +
                            " does not turn encryption on, only \"true\" does: the value is stored in plain text");
  if (isOneOf(word, agreeing))
    finding.fix.push_back({whole, "true"});
}

void lookForDeniedFlags(const ItemText& item, Report& report)
{
  const Span whole = withoutReturn(item.map(), item.place(Column::dasEncrypted));
  if (isOneOf(item.map().text(trimmed(item.map(), whole)), denying))
    report.add(whole, "the value is not encrypted, as it would not be with an empty column").fix.push_back({whole, ""});
}

void lookForDeniedUserData(const ItemText& item, Report& report)
{
  const Span mark = item.place(Column::userData);
  if (isOneOf(item.map().text(trimmed(item.map(), mark)), denying))
    report.add(mark, "any text marks an item as user data, " + quoted(item.map().text(mark)) + " as well")
        .fix.push_back({mark, ""});
}

} // namespace

const std::vector<Rule>& textRules()
{
  static const std::vector<Rule> rules = {
      {"blank-around-field", Severity::error, true, "Blanks before or behind a name belong to it.",
       "The library takes nothing away. A root id with a blank is found by nobody, a setter's name with a blank "
       "matches no registered setter (in silence: the item just cannot be set), a schema is not found, and a column's "
       "name with a blank makes every message about it malformed. --fix takes the blanks away.",
       lookForBlanksAround},
      {"blank-around-default", Severity::warning, false, "Blanks before or behind a default belong to it.",
       "The setter gets the default with its blanks, and may refuse it; a refusal of a default at start-up leaves no "
       "line in the log. As blanks may be meant, there is no automatic fix.",
       lookForBlanksAroundDefaults},
      {"blank-field", Severity::error, true, "A column of nothing but blanks is not empty.",
       "The library tells empty columns from others by their length. One blank in column 9 marks an item as user data, "
       "in column 10 it puts it into a group named by a blank, in column 2 into a schema of that name. --fix empties "
       "the column.",
       lookForBlankFields},
      {"not-utf8", Severity::error, false, "A byte is no UTF-8.",
       "Messages to the database say that they are in UTF-8, and the library passes bytes on as they are. With such a "
       "byte in a default or a name, the whole message is refused: all changes of that schema in one request are lost. "
       "Convert the file, for instance with iconv.",
       lookForBrokenUtf8},
      {"control-character", Severity::error, false, "XML cannot carry a control character.",
       "Messages to the database are XML, which has no place for control characters, not even escaped ones. A request "
       "that carries one is refused, with everything else in it. A carriage return in the middle of a line comes from "
       "files of systems that end lines by it alone.",
       lookForControls},
      {"carriage-return", Severity::error, true, "A carriage return turns encryption off.",
       "The library takes away the line feed of a line that ends in CR LF, and keeps the carriage return. Column 12 is "
       "then \"true\" and a carriage return, which is not \"true\": the value is stored, sent and logged in plain "
       "text. --fix takes the carriage return away. Mind that the databases of devices in the field hold plain values "
       "then, which cannot be decoded: each start says so in the log at level 2, until the value is set again.",
       lookForReturns},
      {"encryption-flag", Severity::error, true, "Only \"true\" turns encryption on.",
       "Column 12 is compared with \"true\", letter by letter: True, TRUE, 1 and yes leave the value in plain text, in "
       "the database, in requests and in the security log. --fix writes \"true\" where a word of that kind stands. "
       "Mind that the databases of devices in the field hold plain values then, which cannot be decoded: each start "
       "says so in the log at level 2, until the value is set again. Any other text here probably belongs to another "
       "column.",
       lookForFlags},
      {"encryption-denied", Severity::note, true, "A flag of \"false\" is the same as none.",
       "Everything but \"true\" means that the value is not encrypted. An empty column says that with less doubt. "
       "--fix empties the column.",
       lookForDeniedFlags},
      {"user-data-denied", Severity::error, true, "A user-data mark of \"false\" is a mark.",
       "Any text in column 9 marks an item as user data: it will be put back to its default when the user's data are "
       "erased, \"false\", \"no\" and \"0\" notwithstanding. --fix empties the column.",
       lookForDeniedUserData},
  };
  return rules;
}

} // namespace cli::check
