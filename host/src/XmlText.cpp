#include "XmlText.h"

#include "Utf8.h"
#include "XmlTree.h"

namespace host
{
namespace
{
bool isXmlCharacter(char32_t codePoint)
{
  if (codePoint < 0x20)
    return codePoint == '\t' || codePoint == '\n' || codePoint == '\r';
  return codePoint != 0xFFFE && codePoint != 0xFFFF;
}

std::string_view referenceFor(char character)
{
  switch (character)
  {
  case '&':
    return "&amp;";
  case '<':
    return "&lt;";
  case '>':
    return "&gt;";
  case '"':
    return "&quot;";
  case '\'':
    return "&apos;";
  case '\r':
    return "&#13;";
  default:
    return {};
  }
}
} // namespace

bool isXmlText(std::string_view text)
{
  while (!text.empty())
  {
    const Utf8Character character = firstCharacter(text);
    if (character.length == 0 || !isXmlCharacter(character.codePoint))
      return false;
    text.remove_prefix(character.length);
  }
  return true;
}

bool isElementName(const std::string& text)
{
  // The parser knows best what it would read back. A text that is more than a name reads back as another name.
  const std::string document = "<" + text + "/>";
  try
  {
    return parseXml(document.data(), document.size()).name == text;
  }
  catch (const XmlError&)
  {
    return false;
  }
}

std::string escapedElementText(std::string_view text)
{
  std::string escaped;
  escaped.reserve(text.size());
  for (const char character : text)
  {
    const std::string_view reference = referenceFor(character);
    if (reference.empty())
      escaped += character;
    else
      escaped += reference;
  }
  return escaped;
}

std::string escapedAttributeText(std::string_view text)
{
  std::string escaped;
  for (const char character : escapedElementText(text))
  {
    if (character == '\t')
      escaped += "&#9;";
    else if (character == '\n')
      escaped += "&#10;";
    else
      escaped += character;
  }
  return escaped;
}
} // namespace host
