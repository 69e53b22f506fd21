// Any text as one line of plain text.
#pragma once

#include <string>
#include <string_view>

namespace host
{
/// The text with everything that could end a line or steer a terminal written out in the manner of C: control
/// characters, line and paragraph separators, marks of writing direction, and bytes that are no UTF-8. With
/// `reversible` backslashes are doubled, so that what was escaped can be told from what stood there.
[[nodiscard]] std::string oneLine(std::string_view text, bool reversible);
} // namespace host
