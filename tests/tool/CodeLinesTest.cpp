// Generated code that fits the format that goes with it.
#include "new/CodeLines.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "base/Shown.h"

namespace
{

using cli::skeleton::foldedCode;

void expectFolded(const std::string& line, const std::string& breaks)
{
  std::istringstream folded(foldedCode(line + "\n"));
  std::string joined;
  for (std::string piece; std::getline(folded, piece);)
  {
    EXPECT_LE(cli::width(piece), cli::skeleton::longestLine) << piece;
    if (piece.find("clang-format") == std::string::npos)
      joined += (joined.empty() ? "" : breaks) + piece.substr(joined.empty() ? 0 : piece.find_first_not_of(' '));
  }
  std::size_t at = 0;
  while (!breaks.empty() && (at = joined.find(breaks + "\"", at)) != std::string::npos)
    joined.erase(at - 1, breaks.size() + 2);
  EXPECT_EQ(joined, line);
}

TEST(CodeLinesTest, LeaveWhatFitsAsItIs)
{
  const std::string line = "  " + std::string(118, 'x') + "\n";
  EXPECT_EQ(foldedCode("\n" + line), "\n" + line);
}

TEST(CodeLinesTest, BreakListsAndLiteralsAndKeepTheirText)
{
  std::string list = "  add({";
  for (int i = 0; i < 40; ++i)
    list += "{" + std::to_string(i) + ", 1}, ";
  expectFolded(list + "});", " ");
  for (const char* piece : {"x", "\\\\", "\\001", "\\\"", "\xc3\xb6"})
  {
    std::string text = "  f(\"";
    for (int i = 0; i < 200; ++i)
      text += piece;
    expectFolded(text + "\");", "@");
  }
}

TEST(CodeLinesTest, GoOnWithAComment)
{
  const std::string folded = foldedCode("  // " + std::string(300, 'c') + "\\0\n");
  EXPECT_NE(folded.find("\n  // ccc"), std::string::npos) << folded;
}

} // namespace
