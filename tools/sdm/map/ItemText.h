// One item of a map, with its columns as texts.
#pragma once

#include <string>
#include <string_view>

#include "MapText.h"

namespace cli
{

/// An item of a map, with its columns as texts. Borrows the map.
class ItemText
{
public:
  ItemText(const MapText& map, const MapLine& line) : mapText(&map), mapLine(&line)
  {
  }

  const MapText& map() const
  {
    return *mapText;
  }
  const MapLine& line() const
  {
    return *mapLine;
  }
  std::string_view operator[](Column which) const
  {
    return mapText->text(*mapLine, which);
  }
  /// Where the column stands in the file.
  const Span& place(Column which) const
  {
    return mapLine->at(which);
  }
  bool has(Column which) const
  {
    return !place(which).empty();
  }
  bool isLocal() const
  {
    return !has(Column::dasSchema);
  }
  bool isUserData() const
  {
    return has(Column::userData);
  }
  bool isEncrypted() const
  {
    return (*this)[Column::dasEncrypted] == "true";
  }

private:
  const MapText* mapText;
  const MapLine* mapLine;
};

/// A piece of the file in quotes, as a terminal may show it; long ones are cut.
std::string quoted(std::string_view text);

} // namespace cli
