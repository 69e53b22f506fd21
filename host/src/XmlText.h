// What XML 1.0 can carry, and how it is written.
#pragma once

#include <string>
#include <string_view>

namespace host
{
/// True when the text is UTF-8 whose every character may stand in an XML 1.0 document.
[[nodiscard]] bool isXmlText(std::string_view text);

/// True when the text can be the name of an element.
[[nodiscard]] bool isElementName(const std::string& text);

/// True for the names that are mostly given: ASCII letters, digits, "_", "-" and ".", of which a name begins with a
/// letter or "_". Any of them can be the name of an element.
bool isPlainName(std::string_view text);

/// The text with markup characters, quotes and carriage returns as references. A carriage return standing for itself
/// would be read back as a line feed.
[[nodiscard]] std::string escapedElementText(std::string_view text);
/// Writes it behind what `target` holds.
void appendElementText(std::string& target, std::string_view text);

/// The same for an attribute's value, where tabs and line feeds would be read back as blanks.
void appendAttributeText(std::string& target, std::string_view text);
} // namespace host
