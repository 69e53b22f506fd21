// Fits texts to the width of a screen.
#pragma once

#include <cstddef>
#include <string>

namespace cli
{

struct ScreenSize
{
  /// 0 means unknown.
  std::size_t columns = 0;
  std::size_t rows = 0;
};

/// The size of the terminal behind this descriptor. A terminal that does not tell its width has 80 columns. 0 rows and
/// columns when it is no terminal.
ScreenSize screenSize(int descriptor);

/// A text of `shown` in lines of at most so many columns, broken at blanks; a word that is longer has a line of its
/// own. Each line but the first begins with `indent` blanks. With 0 columns it stays one line.
std::string wrapped(const std::string& text, std::size_t columns, std::size_t indent);

/// How many rows the text takes on a screen so wide, escape sequences of colours not counted.
std::size_t rowsOf(const std::string& text, std::size_t columns);

} // namespace cli
