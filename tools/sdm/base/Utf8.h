// UTF-8, as a library knows it: overlong forms, surrogates and what is beyond the last character are not well-formed.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include <utf8.h>

namespace cli
{

/// The bytes of the character of UTF-8 that a text begins with; 0 when it begins with none.
inline std::size_t characterLength(std::string_view text)
{
  constexpr std::size_t longest = 4;
  for (std::size_t length = 1; length <= std::min(longest, text.size()); ++length)
  {
    const std::string_view first = text.substr(0, length);
    if (utf8::is_valid(first.begin(), first.end()))
      return length;
  }
  return 0;
}

} // namespace cli
