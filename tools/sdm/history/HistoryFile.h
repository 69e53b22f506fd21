// The file of a history: lines are added at its end, and read from there.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace cli
{

/// Hands out each line of the text, without its end.
void eachLine(std::string_view text, const std::function<void(std::string_view)>& line);

/// One process at a time adds lines; others may read meanwhile. Does not keep the file open.
class HistoryFile
{
public:
  explicit HistoryFile(const std::filesystem::path& deviceFolder);

  const std::filesystem::path& path() const
  {
    return file;
  }

  /// 0, or the reason why the text could not be added. `size` is what the file has then. A line that is unfinished
  /// there stays one of its own.
  int append(const std::string& text, std::size_t& size) const;

  /// A reason that these operations gave, in words.
  static std::string wordsOf(int reason);

  /// Hands out each line, oldest first; of a file that somebody else let grow those at its end. 0, or the reason why
  /// it cannot be read: what is no regular file cannot.
  int read(const std::function<void(std::string_view)>& line) const;

  /// The last line that begins so; empty when there is none, or no file. Reads from the end, as far as needed.
  std::string lastLineWith(const std::string& beginning) const;

  /// Puts `text` in the place of all there is. False when the file stays as it was.
  bool replace(const std::string& text) const;

private:
  std::filesystem::path file;
};

} // namespace cli
