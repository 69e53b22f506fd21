// Texts are copied in stretches between the few characters that need a reference.
#include "XmlText.h"

#include <algorithm>

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

std::string_view referenceInAttributeFor(char character)
{
  if (character == '\t')
    return "&#9;";
  return character == '\n' ? "&#10;" : referenceFor(character);
}

/// Writes `text` behind what `target` holds, with the references that `reference` names.
template <typename Reference>
void appendEscaped(std::string& target, std::string_view text, Reference reference)
{
  std::size_t copied = 0;
  for (std::size_t i = 0; i < text.size(); ++i)
  {
    // All that need one stand before the letters.
    if (text[i] >= 'A')
      continue;
    const std::string_view written = reference(text[i]);
    if (written.empty())
      continue;
    target.append(text, copied, i - copied).append(written);
    copied = i + 1;
  }
  target.append(text, copied);
}
} // namespace

bool isXmlText(std::string_view text)
{
  while (!text.empty())
  {
    // Most are, and may stand in a document as they are.
    if (const auto first = static_cast<unsigned char>(text.front()); first >= 0x20 && first < 0x80)
    {
      text.remove_prefix(1);
      continue;
    }
    const Utf8Character character = firstCharacter(text);
    if (character.length == 0 || !isXmlCharacter(character.codePoint))
      return false;
    text.remove_prefix(character.length);
  }
  return true;
}

bool isPlainName(std::string_view text)
{
  const auto mayBegin = [](char character)
  { return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') || character == '_'; };
  const auto mayFollow = [mayBegin](char character)
  { return mayBegin(character) || (character >= '0' && character <= '9') || character == '-' || character == '.'; };
  return !text.empty() && mayBegin(text.front()) && std::all_of(text.begin(), text.end(), mayFollow);
}

bool isElementName(const std::string& text)
{
  if (isPlainName(text))
    return true;
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

void appendElementText(std::string& target, std::string_view text)
{
  appendEscaped(target, text, referenceFor);
}

std::string escapedElementText(std::string_view text)
{
  std::string escaped;
  escaped.reserve(text.size());
  appendElementText(escaped, text);
  return escaped;
}

void appendAttributeText(std::string& target, std::string_view text)
{
  appendEscaped(target, text, referenceInAttributeFor);
}
} // namespace host
