// Splits a command line into words.
#pragma once

#include <string>
#include <vector>

namespace cli
{

struct Words
{
  std::vector<std::string> list;
  /// Why the line cannot be read; empty when it can.
  std::string problem;
};

/// Words are separated by blanks. Between "double quotes" blanks belong to the word, \" stands for a quote and
/// \\ for a backslash; between 'single quotes' everything stands for itself. Quoted parts join what they
/// touch, and '' or "" is an empty word. A line whose first character that is no blank is # holds no words.
Words splitWords(const std::string& line);

} // namespace cli
