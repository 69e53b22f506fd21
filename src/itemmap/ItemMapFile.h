// Reads an item map file: one item a line, its columns separated by commas, no quoting.
#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string_view>

#include "ItemMapColumn.h"

namespace sdm
{

/// A forward reader over the lines of one file.
///
/// A line holds at most 500 characters; what is beyond them is read as a line of its own. A line ends at its
/// first NUL byte. Lines of nine characters or fewer are passed over in silence, whatever they hold.
class ItemMapFile
{
public:
  static constexpr std::size_t longestLine = 500;
  static constexpr std::size_t shortestLine = 10;

  enum class Line
  {
    item,          ///< `column` tells each of its columns
    tooFewColumns, ///< no item: the line lacks a comma
    readError,     ///< nothing more can be read; errno tells why
    end
  };

  /// Opens the file for reading. Whether it opened is `isOpen`.
  explicit ItemMapFile(const char* path);

  /// Takes over a file that is open for reading, or null.
  explicit ItemMapFile(std::FILE* opened) : file(opened)
  {
  }

  [[nodiscard]] bool isOpen() const
  {
    return file != nullptr;
  }

  /// Goes to the next line that is not passed over. The file has to be open.
  Line next();

  /// The text of one column of the current item; valid until `next`. What stands in a line behind the comma
  /// that ends the last column belongs to none.
  const char* column(ItemMapColumn which) const
  {
    return columns[static_cast<std::size_t>(which)];
  }

  /// The same with its length, which is known already.
  std::string_view text(ItemMapColumn which) const
  {
    const auto i = static_cast<std::size_t>(which);
    return {columns[i], static_cast<std::size_t>(columns[i + 1] - columns[i] - 1)};
  }

  /// The current line, which is a whole one or a piece of one, belongs to a line of more than 500 characters.
  bool lineIsTooLong() const
  {
    return tooLong;
  }

  /// Where the current line stands in the file, counted from 1; too high behind a line of more than 500
  /// characters with a NUL byte in it.
  unsigned long lineNumber() const
  {
    return number;
  }

private:
  [[nodiscard]] bool split(std::size_t length);
  [[nodiscard]] bool moreFollows();

  struct Close
  {
    void operator()(std::FILE* open) const
    {
      std::fclose(open);
    }
  };

  std::unique_ptr<std::FILE, Close> file;
  std::array<char, longestLine + 1> buffer{};
  /// Where each column begins, and where one behind the last would.
  std::array<const char*, itemMapColumnCount + 1> columns{};
  unsigned long number = 0;
  bool lineContinues = false;
  bool tooLong = false;
};

} // namespace sdm
