// Texts that fit what somebody sees them on.
#pragma once

#include <cstddef>
#include <string>

namespace cli
{

struct ScreenSize
{
  /// 0 where nobody knows.
  std::size_t columns = 0;
  std::size_t rows = 0;
};

/// Of the terminal behind this descriptor; one that does not tell has 80 columns, and what is none has no size.
ScreenSize screenSize(int descriptor);

/// A text of `shown` in lines of at most so many columns, broken at blanks; a word that is longer has a line of its
/// own. Each line but the first begins with `indent` blanks. With 0 columns it stays one line.
std::string wrapped(const std::string& text, std::size_t columns, std::size_t indent);

/// How many rows the text takes on a screen so wide, escape sequences of colours not counted.
std::size_t rowsOf(const std::string& text, std::size_t columns);

} // namespace cli
