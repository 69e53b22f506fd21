// Findings for people: a line each, and on a terminal the line of the map with a mark below the place.
#include <algorithm>

#include "Result.h"
#include "base/Shown.h"

namespace cli::check
{
namespace
{

// Of a long line, so many bytes before and behind the place are shown.
constexpr std::uint32_t excerptBefore = 60;
constexpr std::uint32_t excerptBehind = 60;

std::string positionText(const std::string& path, const Position& position)
{
  return shown(path) + ":" + std::to_string(position.line) + ":" + std::to_string(position.column) + ":";
}

/// Moves a place to where a character begins.
std::uint32_t characterBegin(std::string_view bytes, std::uint32_t place, std::uint32_t lowest)
{
  while (place > lowest && (static_cast<unsigned char>(bytes[place]) & 0xc0U) == 0x80U)
    --place;
  return place;
}

void tellExcerpt(std::ostream& out, const MapText& map, const Span& place, std::size_t number, const Style& style)
{
  const Span line = map.wholeLine(place.begin);
  const std::string& bytes = map.bytes();
  const std::uint32_t end = std::min(std::max(place.end, place.begin), line.end);
  const bool cutBefore = place.begin - line.begin > excerptBefore;
  const std::uint32_t from = cutBefore ? characterBegin(bytes, place.begin - excerptBefore, line.begin) : line.begin;
  const bool cutBehind = line.end - place.begin > excerptBehind;
  const std::uint32_t to = cutBehind ? characterBegin(bytes, place.begin + excerptBehind, place.begin) : line.end;
  const std::uint32_t marked = std::min(end, to);

  const std::string before = (cutBefore ? "…" : "") + shown(bytes.substr(from, place.begin - from));
  const std::string middle = shown(bytes.substr(place.begin, marked - place.begin));
  const std::string behind = shown(bytes.substr(marked, to - marked)) + (cutBehind ? "…" : "");
  const std::string gutter = std::to_string(number);
  const std::size_t below = std::max<std::size_t>(width(middle), 1);
  out << style.faint("  " + gutter + " | ") << before << style.strong(middle) << behind << "\n"
      << style.faint("  " + std::string(gutter.size(), ' ') + " | ") << std::string(width(before), ' ')
      << style.good("^" + std::string(below - 1, '~')) << "\n";
}

void tellFinding(std::ostream& out, const Result& result, const Finding& finding, const Positions& positions,
                 const Style& style, bool excerpts)
{
  const Position position = positions.of(finding.place.begin);
  const Severity severity = finding.rule->severity;
  out << style.strong(positionText(result.path, position)) << " "
      << coloured(style, severity, std::string(severityName(severity)) + ":") << " " << finding.text << " "
      << style.faint("[" + std::string(finding.rule->id) + "]") << "\n";
  if (!excerpts)
    return;
  tellExcerpt(out, *result.map, finding.place, position.line, style);
  for (const Related& related : finding.related)
  {
    const Position other = positions.of(related.place.begin);
    out << "  " << style.faint(positionText(result.path, other)) << " " << related.text << "\n";
    tellExcerpt(out, *result.map, related.place, other.line, style);
  }
}

} // namespace

void tellText(std::ostream& out, const Result& result, const Style& style, bool excerpts)
{
  for (const Mended& mended : result.mended)
    out << style.strong(positionText(result.path, mended.position)) << " " << style.good("mended:") << " "
        << mended.text << " " << style.faint("[" + std::string(mended.rule->id) + "]") << "\n";
  if (result.map == nullptr)
    return;
  const Positions positions(*result.map);
  for (const Finding& finding : result.findings)
    tellFinding(out, result, finding, positions, style, excerpts);
}

} // namespace cli::check
