// Reads the line once and remembers whether it is inside quotes.
#include "Words.h"

namespace cli
{
namespace
{

/// Reads from one end of the line to the other.
class Splitter
{
public:
  explicit Splitter(const std::string& text) : line(text)
  {
  }

  Words split()
  {
    while (place < line.size())
    {
      const char c = line[place++];
      if (c == ' ' || c == '\t')
        endWord();
      else if (c == '"' || c == '\'')
        quoted(c);
      else
        add(c);
    }
    endWord();
    return words;
  }

private:
  void add(char c)
  {
    word += c;
    begun = true;
  }

  void endWord()
  {
    if (begun)
      words.list.push_back(word);
    word.clear();
    begun = false;
  }

  void quoted(char quote)
  {
    begun = true;
    while (place < line.size() && line[place] != quote)
    {
      const bool escape = quote == '"' && line[place] == '\\' && place + 1 < line.size() &&
                          (line[place + 1] == '"' || line[place + 1] == '\\');
      if (escape)
        ++place;
      word += line[place++];
    }
    if (place == line.size())
      words.problem = std::string("the quote ") + quote + " has no end";
    else
      ++place;
  }

  const std::string& line;
  std::size_t place = 0;
  std::string word;
  bool begun = false;
  Words words;
};

} // namespace

Words splitWords(const std::string& line)
{
  const std::size_t first = line.find_first_not_of(" \t");
  if (first == std::string::npos || line[first] == '#')
    return {};
  return Splitter(line).split();
}

} // namespace cli
