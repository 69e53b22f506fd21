// The library says what is well-formed; the shortest beginning that is so is the first character.
#include "Utf8.h"

#include <algorithm>

#include <utf8.h>

namespace host
{
Utf8Character firstCharacter(std::string_view text)
{
  constexpr std::size_t longest = 4;
  for (std::size_t length = 1; length <= std::min(longest, text.size()); ++length)
  {
    const std::string_view first = text.substr(0, length);
    if (utf8::is_valid(first.begin(), first.end()))
      return {static_cast<char32_t>(utf8::unchecked::peek_next(first.begin())), length};
  }
  return {};
}
} // namespace host
