// The file as a whole: how it is encoded, how its lines end, and whether it holds anything.
#include "Rules.h"

#include <algorithm>

#include "base/Shown.h"

namespace cli::check
{
namespace
{

constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";

void lookForUtf16(const MapText& map, Report& report)
{
  if (isUtf16(map))
    report.add({0, 2}, "the file is in UTF-16, of which the library reads no item; write it in UTF-8");
}

void lookForByteOrderMark(const MapText& map, Report& report)
{
  if (std::string_view(map.bytes()).substr(0, byteOrderMark.size()) != byteOrderMark)
    return;
  const Span mark{0, static_cast<std::uint32_t>(byteOrderMark.size())};
  report.add(mark, "the file begins with a byte-order mark, which becomes part of the first root id")
      .fix.push_back({mark, ""});
}

void lookForItems(const MapText& map, Report& report)
{
  const auto isItem = [](const MapLine& line) { return line.kind == MapLine::Kind::item; };
  if (!isUtf16(map) && std::none_of(map.lines().begin(), map.lines().end(), isItem))
    report.add({}, "the file holds no item, that is no line with twelve columns separated by commas");
}

/// Whether the flag of an encrypted item is what suffers: that is a finding of its own.
bool spoilsFlag(const MapText& map, const MapLine& line)
{
  return line.kind == MapLine::Kind::item && map.text(line, Column::dasEncrypted) == "true\r";
}

void lookForCrlf(const MapText& map, Report& report)
{
  std::vector<Span> returns;
  for (const MapLine& line : map.lines())
  {
    const std::string_view text = map.text(line.place);
    if (!text.empty() && text.back() == '\r' && !spoilsFlag(map, line))
      returns.push_back({line.place.end - 1, line.place.end});
  }
  if (returns.empty())
    return;
  Finding& finding =
      report.add(returns.front(), counted(returns.size(), "line") + (returns.size() == 1 ? " ends" : " end") +
                                      " in CR LF; the carriage return is kept as part of the last column");
  for (const Span& place : returns)
    finding.fix.push_back({place, ""});
}

} // namespace

const std::vector<Rule>& fileRules()
{
  static const std::vector<Rule> rules = {
      {"utf-16", Severity::error, false, "The file is in UTF-16, of which the library reads no item.",
       "In UTF-16 every other byte of plain text is NUL, and a line ends at its first NUL byte: what is left of each "
       "line is a byte or two, passed over in silence. Editors on other systems write this encoding when asked for "
       "\"Unicode\". Save the file as UTF-8 without a byte-order mark.",
       lookForUtf16},
      {"byte-order-mark", Severity::error, true,
       "The file begins with a byte-order mark, which becomes part of the first root id.",
       "Three invisible bytes at the start of the file are taken for the beginning of the first item's root id. The "
       "item loads, but nobody finds it: set and get requests for it are refused as unknown. --fix takes the bytes "
       "away.",
       lookForByteOrderMark},
      {"no-items", Severity::error, false, "The file holds no item.",
       "The library opens the file, finds no line with eleven commas, and starts with no item at all. There is no way "
       "back to the dictionary in the local management store: that is read only when there is no file.",
       lookForItems},
      {"crlf-line-ends", Severity::warning, true, "Lines end in CR LF, and the carriage return is kept.",
       "The library takes the line feed away and keeps the carriage return, which thus is the last character of column "
       "12. There it does no harm as long as the item is not encrypted; but the next \"true\" that somebody writes "
       "into that column will not turn encryption on (see carriage-return). --fix takes the carriage returns away.",
       lookForCrlf},
  };
  return rules;
}

} // namespace cli::check
