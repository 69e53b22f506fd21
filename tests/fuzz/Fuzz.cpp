#include "Fuzz.h"

#include <cstdio>
#include <cstdlib>

namespace fuzz
{

void require(bool holds, const std::string& rule, const std::string& seen)
{
  if (holds)
    return;
  std::fprintf(stderr, "Broken rule: %s\n%s\n", rule.c_str(), seen.c_str());
  std::abort();
}

void requireEqual(const std::string& actual, const std::string& expected, const std::string& rule)
{
  require(actual == expected, rule, "actual:\n" + actual + "\nexpected:\n" + expected);
}

std::string textOf(const std::uint8_t* data, std::size_t size)
{
  return size == 0 ? std::string() : std::string(reinterpret_cast<const char*>(data), size);
}

std::vector<std::string> parts(const std::string& text, char separator)
{
  std::vector<std::string> pieces(1);
  for (const char c : text)
  {
    if (c == separator)
      pieces.emplace_back();
    else
      pieces.back() += c;
  }
  return pieces;
}

std::string lines(const std::vector<std::string>& texts)
{
  std::string all;
  for (const std::string& text : texts)
    all += text + "\n";
  return all;
}

} // namespace fuzz
