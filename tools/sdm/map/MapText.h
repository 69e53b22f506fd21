// An item map as the library reads it, with the place of everything in the file.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ItemMapFile.h"

namespace cli
{

using Column = sdm::ItemMapColumn;
constexpr std::size_t columnCount = sdm::itemMapColumnCount;

/// A piece of the file: its first byte, and the one behind its last.
struct Span
{
  std::uint32_t begin = 0;
  std::uint32_t end = 0;

  std::uint32_t size() const
  {
    return end - begin;
  }
  bool empty() const
  {
    return begin == end;
  }
};

/// One line as the library reads it. The library reads a line of more than 500 bytes in several pieces.
struct MapLine
{
  enum class Kind
  {
    item,
    tooFewColumns, ///< skipped, with a line in the log
    passedOver     ///< in silence, for it is so short
  };

  Kind kind = Kind::passedOver;
  /// Counted from 1, by line feeds.
  std::uint32_t number = 0;
  /// Without the line feed.
  Span place;
  /// It holds what was left over by the reading before it.
  bool continued = false;
  /// The columns, of an item alone.
  std::array<Span, columnCount> columns;
  /// From the twelfth comma on, of an item that has so many.
  Span surplus;
  /// The first NUL byte. What stands behind it is lost.
  std::optional<std::uint32_t> nul;

  const Span& at(Column which) const
  {
    return columns[static_cast<std::size_t>(which)];
  }
};

class MapText
{
public:
  /// `text` is the content of a file of less than 4 GiB. `path` is for the reader's eyes.
  MapText(std::string path, std::string text);

  const std::string& path() const
  {
    return name;
  }
  const std::string& bytes() const
  {
    return content;
  }
  const std::vector<MapLine>& lines() const
  {
    return all;
  }

  std::string_view text(const Span& place) const
  {
    return std::string_view(content).substr(place.begin, place.size());
  }
  std::string_view text(const MapLine& line, Column which) const
  {
    return text(line.at(which));
  }

  /// The whole line of the file that a byte stands in, without its line feed.
  Span wholeLine(std::uint32_t byte) const;

private:
  void read();
  std::uint32_t addLines(std::uint32_t begin, std::uint32_t end);
  void split(MapLine& line, const sdm::ItemMapFile& file) const;

  std::string name;
  std::string content;
  std::vector<MapLine> all;
  std::uint32_t linesSeen = 0;
  bool lineContinues = false;
};

/// A place as people count: lines from 1, characters of UTF-8 in them from 1. A byte that is no UTF-8 counts as one.
struct Position
{
  std::size_t line = 1;
  std::size_t column = 1;
};

/// Turns bytes of a map into positions. Make one for each map: the constructor looks for the start of every line.
class Positions
{
public:
  explicit Positions(const MapText& map);

  Position of(std::uint32_t byte) const;

private:
  const std::string& content;
  std::vector<std::uint32_t> starts;
};

/// What a column is called in texts: "the root id", "the default" ...
const char* columnName(Column which);

} // namespace cli
