// Reads lines of "NAME ESCAPED". The name is the hash of the bytes, so nothing is replayed that nobody committed.
#include "Inputs.h"

#include <cstdint>
#include <cstdio>
#include <stdexcept>

#include "Fuzz.h"

namespace fuzz
{

namespace
{

const std::string firstLine = "fuzz inputs 1";
constexpr std::size_t nameLength = 16;

std::string nameOf(const std::string& content)
{
  std::uint64_t value = 0xCBF29CE484222325;
  for (const char c : content)
    value = (value ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  char name[nameLength + 1];
  std::snprintf(name, sizeof name, "%016llx", static_cast<unsigned long long>(value));
  return name;
}

[[noreturn]] void refuse(std::size_t number)
{
  throw std::runtime_error("line " + std::to_string(number) + " is damaged");
}

unsigned int digit(char c)
{
  const std::size_t value = std::string("0123456789abcdef").find(c);
  if (value == std::string::npos)
    throw std::invalid_argument("no digit");
  return static_cast<unsigned int>(value);
}

/// The byte that the escape at `place` stands for; `place` moves to its last character.
char unescapedAt(const std::string& text, std::size_t& place)
{
  const char kind = text.at(++place);
  if (kind == 'n')
    return '\n';
  if (kind == '\\')
    return kind;
  if (kind != 'x')
    throw std::invalid_argument("no escape");
  place += 2;
  return static_cast<char>(digit(text.at(place - 1)) << 4U | digit(text.at(place)));
}

std::string unescaped(const std::string& text)
{
  std::string content;
  for (std::size_t place = 0; place < text.size(); ++place)
  {
    if (text[place] < ' ' || text[place] > '~')
      throw std::invalid_argument("a byte that is to be escaped");
    content += text[place] == '\\' ? unescapedAt(text, place) : text[place];
  }
  return content;
}

Input inputOf(const std::string& line)
{
  const Input input = {line.substr(0, nameLength), unescaped(line.substr(nameLength + 1))};
  if (line.at(nameLength) != ' ' || input.name != nameOf(input.content))
    throw std::invalid_argument("another name");
  return input;
}

} // namespace

std::vector<Input> readInputs(const std::string& text)
{
  const std::vector<std::string> all = parts(text, '\n');
  if (all.size() < 3 || all.front() != firstLine)
    refuse(1);
  if (!all.back().empty())
    refuse(all.size());
  const std::size_t count = all.size() - 3;
  std::vector<Input> inputs;
  for (std::size_t i = 1; i <= count; ++i)
  {
    try
    {
      inputs.push_back(inputOf(all[i]));
    }
    catch (const std::logic_error&)
    {
      refuse(i + 1);
    }
    if (i > 1 && inputs[i - 2].name >= inputs[i - 1].name)
      refuse(i + 1);
  }
  if (all[count + 1] != "end " + std::to_string(count))
    refuse(count + 2);
  return inputs;
}

} // namespace fuzz
