// UTF-8, one character at a time.
#pragma once

#include <cstddef>
#include <string_view>

namespace host
{
/// One character of a text.
struct Utf8Character
{
  char32_t codePoint = 0;
  /// How many bytes it takes; 0 when the text does not begin with a character of well-formed UTF-8.
  std::size_t length = 0;
};

/// The first character of a text that is not empty. Overlong forms and surrogates are not well-formed.
Utf8Character firstCharacter(std::string_view text);
} // namespace host
