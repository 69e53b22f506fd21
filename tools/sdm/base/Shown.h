// Escapes texts for a terminal.
#pragma once

#include <cstddef>
#include <string>

namespace cli
{

/// The text with everything escaped that could move a terminal's cursor, change its colours or reorder what it
/// shows: control characters, bytes that are no UTF-8, marks of writing direction. A backslash is doubled, so
/// that what is shown has one meaning.
std::string shown(const std::string& text);

/// As `shown`, with quotes around a text that is empty or has blanks, as it would be typed.
std::string shownValue(const std::string& text);

/// As `shown`, of a text that was escaped before, so that its backslashes mean something already.
std::string shownAgain(const std::string& text);

/// A text of JSON, line ends included, that says the same with the characters escaped which a terminal may not show.
std::string shownJson(const std::string& json);

/// Whether a terminal may show the text as it is.
bool isShowable(const std::string& text);

/// "1 item", "2 items".
std::string counted(std::size_t number, const std::string& what);

/// The columns that a text of `shown` takes.
std::size_t width(const std::string& text);

/// The text, filled with blanks up to so many columns.
std::string padded(const std::string& text, std::size_t columns);

/// At most so many columns of a text of `shown`, ending in "…" when something is missing.
std::string clipped(const std::string& text, std::size_t columns);

/// Chooses a UTF-8 locale for the widths of characters. Once, at the start.
void useUtf8();

} // namespace cli
