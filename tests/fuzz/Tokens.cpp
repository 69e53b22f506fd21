#include "Tokens.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "Fuzz.h"

namespace fuzz
{

namespace
{

constexpr int deepest = 12;

std::size_t below(std::size_t limit, Random& random)
{
  return static_cast<std::size_t>(random()) % limit;
}

std::string expandTo(const Grammar& grammar, const std::string& name, Random& random, int depth)
{
  const std::vector<std::string>& alternatives = grammar.at(name);
  const std::string& chosen = alternatives[depth >= deepest ? 0 : below(alternatives.size(), random)];
  std::string text;
  for (std::size_t place = 0; place < chosen.size();)
  {
    const std::size_t end = chosen[place] == '{' ? chosen.find('}', place) : std::string::npos;
    if (end == std::string::npos)
    {
      text += chosen[place++];
      continue;
    }
    text += expandTo(grammar, chosen.substr(place + 1, end - place - 1), random, depth + 1);
    place = end + 1;
  }
  return text;
}

std::vector<std::string> split(const std::string& text, const std::string& delimiters)
{
  std::vector<std::string> tokens;
  bool joins = false;
  for (const char c : text)
  {
    const bool delimiter = delimiters.find(c) != std::string::npos;
    if (delimiter || !joins)
      tokens.emplace_back();
    tokens.back() += c;
    joins = !delimiter;
  }
  return tokens;
}

std::string anyPiece(const Grammar& grammar, Random& random)
{
  const auto rule = std::next(grammar.begin(), static_cast<std::ptrdiff_t>(below(grammar.size(), random)));
  return expand(grammar, rule->first, random);
}

void changeBytes(std::string& token)
{
  const std::size_t room = token.size() + 8;
  std::vector<std::uint8_t> bytes(room);
  std::copy(token.begin(), token.end(), bytes.begin());
  const std::size_t size = LLVMFuzzerMutate(bytes.data(), token.size(), room);
  token = textOf(bytes.data(), size);
}

void changeTokens(std::vector<std::string>& tokens, const Grammar& grammar, Random& random)
{
  const auto at = [&](std::size_t place) { return tokens.begin() + static_cast<std::ptrdiff_t>(place); };
  const std::size_t place = below(tokens.size(), random);
  const std::size_t other = below(tokens.size(), random);
  switch (below(6, random))
  {
  case 0:
    tokens.erase(at(std::min(place, other)), at(std::min(std::max(place, other), std::min(place, other) + 6)));
    break;
  case 1:
    tokens.insert(at(place), tokens[other]);
    break;
  case 2:
    std::swap(tokens[place], tokens[other]);
    break;
  case 3:
    tokens[place] = anyPiece(grammar, random);
    break;
  case 4:
    tokens.insert(at(place), anyPiece(grammar, random));
    break;
  default:
    changeBytes(tokens[place]);
  }
}

} // namespace

std::string expand(const Grammar& grammar, const std::string& name, Random& random)
{
  return expandTo(grammar, name, random, 0);
}

std::size_t mutate(const Grammar& grammar, const std::string& delimiters, std::uint8_t* data, std::size_t size,
                   std::size_t maxSize, unsigned int seed)
{
  Random random(seed);
  const std::size_t way = below(16, random);
  if (way < 4 && size > 0)
    return LLVMFuzzerMutate(data, size, maxSize);
  std::vector<std::string> tokens = split(textOf(data, size), delimiters);
  if (way == 4 || tokens.empty())
    tokens = {expand(grammar, "input", random)};
  else
    for (std::size_t left = 1 + below(4, random); left > 0 && !tokens.empty(); --left)
      changeTokens(tokens, grammar, random);
  std::string text;
  for (const std::string& token : tokens)
    text += token;
  text.resize(std::min(text.size(), maxSize));
  std::memcpy(data, text.data(), text.size());
  return text.size();
}

} // namespace fuzz
