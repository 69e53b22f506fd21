// What a terminal would act upon is escaped; widths are those of the C library.
#include "Shown.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <langinfo.h>

namespace cli
{
namespace
{

struct Character
{
  wchar_t code;
  std::size_t bytes;
};

/// The character at a place; a code of -1 stands for a byte that begins none.
Character characterAt(const std::string& text, std::size_t place)
{
  std::mbstate_t state{};
  wchar_t code = 0;
  const std::size_t bytes = std::mbrtowc(&code, text.data() + place, text.size() - place, &state);
  if (bytes > text.size())
    return {static_cast<wchar_t>(-1), 1};
  return {code, std::max<std::size_t>(bytes, 1)};
}

bool mayShow(wchar_t code)
{
  const auto number = static_cast<char32_t>(code);
  const bool control = number < 0x20 || (number >= 0x7f && number < 0xa0);
  const bool direction = number == 0x200e || number == 0x200f || number == 0x061c ||
                         (number >= 0x2028 && number <= 0x202e) || (number >= 0x2066 && number <= 0x2069);
  return code != static_cast<wchar_t>(-1) && !control && !direction;
}

std::string escaped(const std::string& bytes)
{
  std::string text;
  for (const char c : bytes)
  {
    std::array<char, 8> hex{};
    std::snprintf(hex.data(), hex.size(), "\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
    text += hex.data();
  }
  return text;
}

std::string escapedAll(const std::string& text, const char* backslash)
{
  std::string safe;
  for (std::size_t i = 0; i < text.size();)
  {
    const Character next = characterAt(text, i);
    const std::string bytes = text.substr(i, next.bytes);
    if (bytes == "\\")
      safe += backslash;
    else if (bytes == "\n")
      safe += "\\n";
    else if (bytes == "\t")
      safe += "\\t";
    else
      safe += mayShow(next.code) ? bytes : escaped(bytes);
    i += next.bytes;
  }
  return safe;
}

std::size_t columnsOf(wchar_t code)
{
  return static_cast<std::size_t>(std::max(0, wcwidth(code)));
}

} // namespace

std::string shown(const std::string& text)
{
  return escapedAll(text, "\\\\");
}

std::string shownAgain(const std::string& text)
{
  return escapedAll(text, "\\");
}

std::string shownJson(const std::string& json)
{
  std::string safe;
  for (std::size_t i = 0; i < json.size();)
  {
    const Character next = characterAt(json, i);
    std::array<char, 16> code{};
    std::snprintf(code.data(), code.size(), "\\u%04x", static_cast<unsigned>(next.code));
    // JSON has escaped what is below a blank already, but for its own line ends.
    safe += next.code < 0x20 || mayShow(next.code) ? json.substr(i, next.bytes) : code.data();
    i += next.bytes;
  }
  return safe;
}

bool isShowable(const std::string& text)
{
  return shownAgain(text) == text;
}

std::string shownValue(const std::string& text)
{
  const std::string safe = shown(text);
  return text.empty() || text.find(' ') != std::string::npos ? "\"" + safe + "\"" : safe;
}

std::string counted(std::size_t number, const std::string& what)
{
  return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

std::size_t width(const std::string& text)
{
  std::size_t columns = 0;
  for (std::size_t i = 0; i < text.size();)
  {
    const Character next = characterAt(text, i);
    columns += columnsOf(next.code);
    i += next.bytes;
  }
  return columns;
}

std::string padded(const std::string& text, std::size_t columns)
{
  const std::size_t taken = width(text);
  return taken < columns ? text + std::string(columns - taken, ' ') : text;
}

std::string clipped(const std::string& text, std::size_t columns)
{
  if (width(text) <= columns || columns == 0)
    return text;
  std::size_t taken = 0;
  std::size_t i = 0;
  while (i < text.size())
  {
    const Character next = characterAt(text, i);
    if (taken + columnsOf(next.code) > columns - 1)
      break;
    taken += columnsOf(next.code);
    i += next.bytes;
  }
  return text.substr(0, i) + "…";
}

void useUtf8()
{
  std::setlocale(LC_CTYPE, "");
  if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
    std::setlocale(LC_CTYPE, "C.UTF-8");
}

} // namespace cli
