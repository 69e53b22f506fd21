// The library's reader runs over the text in memory, and the places of its columns are found again.
#include "MapText.h"

#include "base/Utf8.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

namespace cli
{
namespace
{

std::uint32_t narrow(std::size_t place)
{
  return static_cast<std::uint32_t>(place);
}

} // namespace

const char* columnName(Column which)
{
  return sdm::wordsOf(which);
}

MapText::MapText(std::string path, std::string text) : name(std::move(path)), content(std::move(text))
{
  all.reserve(static_cast<std::size_t>(std::count(content.begin(), content.end(), '\n')) + 1);
  if (!content.empty())
    read();
}

void MapText::read()
{
  // The library's own reader tells what is an item and where its columns are; where it stands tells the rest.
  std::FILE* const opened = ::fmemopen(content.data(), content.size(), "r");
  sdm::ItemMapFile file(opened);
  if (!file.isOpen())
    throw std::bad_alloc();
  using Line = sdm::ItemMapFile::Line;
  std::uint32_t begin = 0;
  for (Line line = file.next(); line == Line::item || line == Line::tooFewColumns; line = file.next())
  {
    begin = addLines(begin, narrow(static_cast<std::size_t>(std::ftell(opened))));
    if (line == Line::item)
      split(all.back(), file);
    else
      all.back().kind = MapLine::Kind::tooFewColumns;
  }
  addLines(begin, narrow(content.size()));
}

std::uint32_t MapText::addLines(std::uint32_t begin, std::uint32_t end)
{
  while (begin < end)
  {
    const std::size_t longest = std::min<std::size_t>(begin + sdm::ItemMapFile::longestLine, content.size());
    const auto* const feed = static_cast<const char*>(std::memchr(content.data() + begin, '\n', longest - begin));
    MapLine line;
    line.place = {begin, feed != nullptr ? narrow(static_cast<std::size_t>(feed - content.data())) : narrow(longest)};
    begin = line.place.end + (feed != nullptr ? 1 : 0);
    line.continued = lineContinues;
    line.number = linesSeen + 1;
    const std::size_t nul = text(line.place).find('\0');
    if (nul != std::string_view::npos)
      line.nul = line.place.begin + narrow(nul);
    lineContinues = feed == nullptr;
    linesSeen += feed != nullptr ? 1 : 0;
    // The end of a line of exactly as many bytes as fit is no line.
    if (!line.continued || !line.place.empty())
      all.push_back(line);
  }
  return begin;
}

void MapText::split(MapLine& line, const sdm::ItemMapFile& file) const
{
  line.kind = MapLine::Kind::item;
  const char* const first = file.column(Column::rootId);
  for (std::size_t i = 0; i < columnCount; ++i)
  {
    const char* const column = file.column(static_cast<Column>(i));
    const std::uint32_t begin = line.place.begin + narrow(static_cast<std::size_t>(column - first));
    line.columns[i] = {begin, begin + narrow(std::strlen(column))};
  }
  line.surplus = {line.columns.back().end, line.nul.value_or(line.place.end)};
}

Span MapText::wholeLine(std::uint32_t byte) const
{
  const std::size_t before = byte == 0 ? std::string::npos : content.rfind('\n', byte - 1);
  const std::size_t feed = content.find('\n', byte);
  return {before == std::string::npos ? 0 : narrow(before + 1), narrow(std::min(feed, content.size()))};
}

Positions::Positions(const MapText& map) : content(map.bytes()), starts{0}
{
  for (std::size_t feed = content.find('\n'); feed != std::string::npos; feed = content.find('\n', feed + 1))
    starts.push_back(narrow(feed + 1));
}

Position Positions::of(std::uint32_t byte) const
{
  const auto behind = std::upper_bound(starts.begin(), starts.end(), byte);
  Position position{static_cast<std::size_t>(behind - starts.begin()), 1};
  for (std::string_view rest = std::string_view(content).substr(*(behind - 1), byte - *(behind - 1)); !rest.empty();)
  {
    rest.remove_prefix(std::max<std::size_t>(characterLength(rest), 1));
    ++position.column;
  }
  return position;
}

} // namespace cli
