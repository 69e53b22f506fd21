// Looks for the last place of a line where it may be broken, and breaks it there.
#include "CodeLines.h"

#include <algorithm>
#include <sstream>

#include "base/Shown.h"

namespace cli::skeleton
{
namespace
{

/// Bytes of the character of a literal or of code that begins at `at`: an escape sequence or one of UTF-8 is not torn.
std::size_t lengthAt(const std::string& code, std::size_t at)
{
  std::size_t length = 1;
  if (code[at] == '\\' && at + 1 < code.size())
    length = code[at + 1] >= '0' && code[at + 1] <= '7' ? 4 : 2;
  while (at + length < code.size() && (static_cast<unsigned char>(code[at + length]) & 0xc0U) == 0x80U)
    ++length;
  return std::min(length, code.size() - at);
}

/// Where a line may end, and what has to stand at both sides of the break.
struct Break
{
  std::size_t at = 0;
  std::string before;
  std::string after;
};

class Folding
{
public:
  explicit Folding(const std::string& line)
      : code(line), indent(line.find_first_not_of(' '), ' '), comment(line.compare(indent.size(), 2, "//") == 0)
  {
  }

  std::string text()
  {
    for (std::size_t at = indent.size(); at < code.size(); at += lengthAt(code, at))
    {
      if (last.at > begin && width(piece(at + lengthAt(code, at))) + 1 > longestLine)
        breakLine();
      if (code[at] == '"' && !comment)
        quoted = !quoted;
      note(at);
    }
    return folded + piece(code.size());
  }

private:
  std::string piece(std::size_t end) const
  {
    return start + code.substr(begin, end - begin);
  }

  /// Remembers the place behind this character when the line may end there.
  void note(std::size_t at)
  {
    const std::size_t behind = at + lengthAt(code, at);
    if (comment && behind > indent.size() + 2)
      last = {behind, "", indent + "// "};
    else if (quoted && code[at] != '"')
      last = {behind, "\"", indent + "    \""};
    else if (!quoted && at > 0 && code[at] == ' ' && code[at - 1] == ',')
      last = {behind, "", indent + "    "};
  }

  void breakLine()
  {
    std::string line = piece(last.at) + last.before;
    folded += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    begin = last.at;
    start = last.after;
  }

  const std::string& code;
  std::string indent;
  bool comment;
  bool quoted = false;
  std::size_t begin = 0;
  std::string start;
  std::string folded;
  Break last;
};

} // namespace

std::string foldedCode(const std::string& code)
{
  std::istringstream lines(code);
  std::string folded;
  for (std::string line; std::getline(lines, line);)
  {
    if (width(line) <= longestLine)
      folded += line + "\n";
    else
      folded += "  // clang-format off\n" + Folding(line).text() + "\n  // clang-format on\n";
  }
  return folded;
}

} // namespace cli::skeleton
