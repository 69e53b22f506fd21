// Where command lines come from: a terminal with line editing, or a pipe.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace cli
{

class Interrupts;

/// The words that may stand where the last word of `line` is; `line` ends at the cursor. The last word is empty
/// behind a blank.
using Completer = std::function<std::vector<std::string>(const std::string& line)>;

/// In bytes. No command needs more, and a script without line ends must not fill the memory.
constexpr std::size_t longestLine = std::size_t{1} << 20;

class LineReader
{
public:
  virtual ~LineReader() = default;

  /// The next line without its end; false when there are no more. Of a line that is longer than `longestLine` it is
  /// the beginning, with one byte too many.
  virtual bool next(std::string& line) = 0;

  /// Keeps the last line for the arrow keys, where there are any. Lines with secrets are not for keeping.
  virtual void keep(const std::string&)
  {
  }

  /// Asks for a text without showing it; false when nobody can be asked.
  virtual bool askHidden(const std::string&, std::string&)
  {
    return false;
  }
};

/// Reads standard input as it comes. An interrupt ends it, and `interrupted` is true from then on. Borrows both.
std::unique_ptr<LineReader> makePlainReader(Interrupts& interrupts, bool& interrupted);

/// Reads a terminal, with prompt, history and completion; one at a time in a process. Ctrl-C takes the line back,
/// Ctrl-D on an empty one ends. Borrows `interrupts`.
std::unique_ptr<LineReader> makeTerminalReader(const std::string& prompt, Completer completer, Interrupts& interrupts);

} // namespace cli
