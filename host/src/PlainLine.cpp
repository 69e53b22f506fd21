// Characters that could mislead a reader of a line are written as escapes, and so is what is no UTF-8.
#include "PlainLine.h"

#include <array>
#include <cstdio>

#include "Utf8.h"

namespace host
{
namespace
{
std::string formatted(const char* prefix, int digits, unsigned value)
{
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "\\%s%0*x", prefix, digits, value);
  return text.data();
}

bool misleads(char32_t codePoint)
{
  const bool control = codePoint < 0x20 || (codePoint >= 0x7F && codePoint <= 0x9F);
  const bool direction = codePoint == 0x200E || codePoint == 0x200F || codePoint == 0x061C ||
                         (codePoint >= 0x202A && codePoint <= 0x202E) || (codePoint >= 0x2066 && codePoint <= 0x2069);
  return control || direction || codePoint == 0x2028 || codePoint == 0x2029;
}

std::string escaped(char32_t codePoint)
{
  switch (codePoint)
  {
  case '\n':
    return "\\n";
  case '\r':
    return "\\r";
  case '\t':
    return "\\t";
  default:
    return codePoint < 0x80 ? formatted("x", 2, codePoint) : formatted("u", 4, codePoint);
  }
}
} // namespace

std::string oneLine(std::string_view text, bool reversible)
{
  std::string line;
  line.reserve(text.size());
  while (!text.empty())
  {
    const Utf8Character character = firstCharacter(text);
    const std::size_t length = character.length == 0 ? 1 : character.length;
    if (character.length == 0)
      line += formatted("x", 2, static_cast<unsigned char>(text.front()));
    else if (misleads(character.codePoint))
      line += escaped(character.codePoint);
    else if (reversible && character.codePoint == '\\')
      line += "\\\\";
    else
      line += text.substr(0, length);
    text.remove_prefix(length);
  }
  return line;
}
} // namespace host
