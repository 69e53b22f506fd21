// Asks the terminal for its size, and breaks texts at blanks.
#include "Screen.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <sstream>

#include "Shown.h"

namespace cli
{
namespace
{

constexpr std::size_t usualColumns = 80;

std::string withoutColours(const std::string& line)
{
  std::string plain;
  for (std::size_t i = 0; i < line.size(); ++i)
  {
    if (line[i] == '\x1b')
      i = std::min(line.find('m', i), line.size());
    else
      plain += line[i];
  }
  return plain;
}

} // namespace

ScreenSize screenSize(int descriptor)
{
  if (::isatty(descriptor) == 0)
    return {};
  winsize size = {};
  if (::ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
    return {usualColumns, 0};
  return {size.ws_col, size.ws_row};
}

std::string wrapped(const std::string& text, std::size_t columns, std::size_t indent)
{
  if (columns == 0)
    return text;
  std::istringstream words(text);
  std::string lines;
  std::size_t taken = indent;
  for (std::string word; words >> word;)
  {
    const std::size_t length = width(word);
    if (lines.empty())
      lines = word;
    else if (taken + 1 + length <= columns)
      lines += " " + word;
    else
    {
      lines += "\n" + std::string(indent, ' ') + word;
      taken = indent + length;
      continue;
    }
    taken += length + (lines.size() == word.size() ? 0 : 1);
  }
  return lines;
}

std::size_t rowsOf(const std::string& text, std::size_t columns)
{
  std::size_t rows = 0;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    rows += columns == 0 ? 1 : std::max<std::size_t>(1, (width(withoutColours(line)) + columns - 1) / columns);
  return rows;
}

} // namespace cli
