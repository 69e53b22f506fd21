// What several rules need: quoting, blanks, the names that XML takes.
#include "Rules.h"

#include <algorithm>
#include <cctype>
#include <memory>
#include <stdexcept>

#include <expat.h>

#include "base/Shown.h"

namespace cli::check
{
namespace
{

struct FreeParser
{
  void operator()(XML_Parser parser) const
  {
    XML_ParserFree(parser);
  }
};

struct SeenElement
{
  std::string_view expected;
  bool same = false;
};

void noteElement(void* userData, const char* name, const char** attributes)
{
  auto* seen = static_cast<SeenElement*>(userData);
  seen->same = seen->expected == name && *attributes == nullptr;
}

bool isPlainName(std::string_view text)
{
  const auto letter = [](char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '_'; };
  const auto rest = [&](char c)
  { return letter(c) || std::isdigit(static_cast<unsigned char>(c)) != 0 || c == '.' || c == '-'; };
  return !text.empty() && letter(text.front()) && std::all_of(text.begin(), text.end(), rest);
}

bool isBlank(char c)
{
  return c == ' ' || c == '\t';
}

} // namespace

Span trimmed(const MapText& map, Span place)
{
  const std::string_view text = map.text(place);
  const auto* const first = std::find_if_not(text.begin(), text.end(), isBlank);
  if (first == text.end())
    return {place.begin, place.begin};
  const auto last = std::find_if_not(text.rbegin(), text.rend(), isBlank);
  return {place.begin + static_cast<std::uint32_t>(first - text.begin()),
          place.end - static_cast<std::uint32_t>(last - text.rbegin())};
}

Span withoutReturn(const MapText& map, Span place)
{
  const std::string_view text = map.text(place);
  if (!text.empty() && text.back() == '\r')
    --place.end;
  return place;
}

std::vector<ItemText> itemsOf(const MapText& map)
{
  std::vector<ItemText> items;
  for (const MapLine& line : map.lines())
  {
    if (line.kind == MapLine::Kind::item && !line.continued)
      items.emplace_back(map, line);
  }
  return items;
}

std::string lineOf(const MapLine& line)
{
  return "line " + std::to_string(line.number);
}

bool isUtf16(const MapText& map)
{
  const std::string_view start = std::string_view(map.bytes()).substr(0, 2);
  return start == "\xff\xfe" || start == "\xfe\xff";
}

bool isXmlName(std::string_view text)
{
  if (isPlainName(text))
    return true;
  // Whoever reads the replies decides: the library's own parser.
  const std::unique_ptr<XML_ParserStruct, FreeParser> parser(XML_ParserCreate("UTF-8"));
  if (parser == nullptr)
    throw std::bad_alloc();
  SeenElement seen{text};
  XML_SetStartElementHandler(parser.get(), noteElement);
  XML_SetUserData(parser.get(), &seen);
  const std::string element = "<" + std::string(text) + "/>";
  return XML_Parse(parser.get(), element.data(), static_cast<int>(element.size()), 1) == XML_STATUS_OK && seen.same;
}

} // namespace cli::check
