// What XML 1.0 can carry, and how it is written.
#pragma once

#include <string>
#include <string_view>

namespace host
{
/// True when the text is UTF-8 whose every character may stand in an XML 1.0 document.
bool isXmlText(std::string_view text);

/// True when the text can be the name of an element.
bool isElementName(const std::string& text);

/// The text with markup characters, quotes and carriage returns as references. A carriage return standing for itself
/// would be read back as a line feed.
std::string escapedElementText(std::string_view text);

/// The same for an attribute's value, where tabs and line feeds would be read back as blanks.
std::string escapedAttributeText(std::string_view text);
} // namespace host
