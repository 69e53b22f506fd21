#include "MapFitness.h"

#include <algorithm>
#include <sstream>

namespace cli
{
namespace
{

// As the library reads lines.
constexpr std::size_t longestLine = 500;
constexpr std::size_t passedOver = 9;
constexpr std::ptrdiff_t commas = 11;

std::string problemOf(const std::string& line)
{
  if (line.size() > longestLine)
    return "it has more than 500 characters and would be cut";
  if (line.find('\0') != std::string::npos)
    return "it holds a NUL character and would end there";
  if (line.size() > passedOver && std::count(line.begin(), line.end(), ',') < commas)
    return "it has fewer than twelve columns and would be skipped";
  if (!line.empty() && line.back() == '\r')
    return "it ends in CR LF, so its item is never encrypted";
  return "";
}

} // namespace

std::vector<std::string> unfitLines(const std::string& map)
{
  std::istringstream lines(map);
  std::vector<std::string> problems;
  std::size_t number = 0;
  for (std::string line; std::getline(lines, line);)
  {
    ++number;
    const std::string problem = problemOf(line);
    if (!problem.empty())
      problems.push_back("line " + std::to_string(number) + ": " + problem);
  }
  return problems;
}

} // namespace cli
