// The workload's names end in numbers: by them this platform finds what belongs to a name in the same time on every
// map, so that what grows with the map is the library's.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace bench
{

inline std::size_t numberAtEnd(std::string_view name)
{
  std::size_t number = 0;
  std::size_t factor = 1;
  for (auto digit = name.rbegin(); digit != name.rend() && *digit >= '0' && *digit <= '9'; ++digit, factor *= 10)
    number += static_cast<std::size_t>(*digit - '0') * factor;
  return number;
}

/// What belongs to that number, made when there is nothing yet.
template <typename Entry>
Entry& entryAt(std::vector<Entry>& entries, std::size_t number)
{
  if (number >= entries.size())
    entries.resize(number + 1);
  return entries[number];
}

} // namespace bench
