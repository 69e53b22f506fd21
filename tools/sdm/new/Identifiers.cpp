// Letters and digits stay; a keyword or a name that is taken gets a suffix.
#include "Identifiers.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <string_view>
#include <vector>

#include "base/Shown.h"

namespace cli::skeleton
{
namespace
{

// What the language keeps to itself, and what a struct of settings or the headers around it could be cut off from.
constexpr std::string_view reserved =
    " alignas alignof and and_eq asm assert auto bitand bitor bool break case catch char char16_t "
    "char32_t char8_t class co_await co_return co_yield compl concept const const_cast consteval "
    "constexpr constinit continue decltype default delete do double dynamic_cast else enum errno "
    "explicit export extern false final float for friend goto host if inline int linux long main mutable "
    "namespace new noexcept not not_eq nullptr operator or or_eq override private protected public "
    "register reinterpret_cast requires return sdm short signed sizeof static static_assert static_cast "
    "std stderr stdin stdout struct switch template testing this thread_local throw true try typedef "
    "typeid typename union unix unsigned using virtual void volatile wchar_t while xor xor_eq ";

bool isReserved(const std::string& name)
{
  return reserved.find(" " + name + " ") != std::string_view::npos;
}

bool isWordCharacter(char c)
{
  return static_cast<unsigned char>(c) < 0x80 && std::isalnum(static_cast<unsigned char>(c)) != 0;
}

char small(char c)
{
  return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

char capital(char c)
{
  return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

bool isSmall(char c)
{
  return std::islower(static_cast<unsigned char>(c)) != 0;
}

bool isCapital(char c)
{
  return std::isupper(static_cast<unsigned char>(c)) != 0;
}

/// Words end at whatever is neither letter nor digit, and before a capital behind a small letter.
std::vector<std::string> wordsOf(const std::string& text)
{
  std::vector<std::string> words;
  bool inWord = false;
  for (std::size_t i = 0; i < text.size(); ++i)
  {
    if (!isWordCharacter(text[i]))
    {
      inWord = false;
      continue;
    }
    if (!inWord || (isCapital(text[i]) && isSmall(text[i - 1])))
      words.emplace_back();
    words.back() += text[i];
    inWord = true;
  }
  return words;
}

std::string capitalised(std::string word)
{
  const bool shouts = word.size() > 1 && std::none_of(word.begin(), word.end(), isSmall);
  if (shouts)
    std::transform(word.begin(), word.end(), word.begin(), small);
  word[0] = capital(word[0]);
  return word;
}

std::string joined(const std::vector<std::string>& words, const std::string& otherwise)
{
  std::string name;
  for (const std::string& word : words)
    name += capitalised(word);
  if (name.empty() || std::isdigit(static_cast<unsigned char>(name[0])) != 0)
    name = otherwise + name;
  return name;
}

} // namespace

std::string fieldName(const std::string& callback)
{
  std::vector<std::string> words = wordsOf(callback);
  if (words.size() > 1 && (capitalised(words.front()) == "Set" || capitalised(words.front()) == "Get"))
    words.erase(words.begin());
  std::string name = joined(words, "Value");
  name[0] = small(name[0]);
  return isReserved(name) ? name + "Value" : name;
}

std::string typeName(const std::string& text)
{
  return joined(wordsOf(text), "Items");
}

std::string namespaceName(const std::string& text)
{
  std::string name;
  for (const char c : text)
  {
    if (isWordCharacter(c))
      name += small(c);
  }
  return isReserved(name) ? name + "service" : name;
}

std::string literal(const std::string& text)
{
  const bool readable = shown(text).find("\\x") == std::string::npos;
  std::string written = "\"";
  for (const char c : text)
  {
    const auto byte = static_cast<unsigned char>(c);
    // Two question marks begin what older compilers take for another character.
    if (c == '"' || c == '\\' || (c == '?' && written.back() == '?'))
      written += std::string("\\") + c;
    else if ((byte >= 0x20 && byte < 0x7f) || (byte >= 0x80 && readable))
      written += c;
    else
    {
      // Three digits always, so that a digit behind it is not one of them.
      std::array<char, 5> octal{};
      std::snprintf(octal.data(), octal.size(), "\\%03o", static_cast<unsigned>(byte));
      written += octal.data();
    }
  }
  return written + "\"";
}

std::string UniqueNames::claim(const std::string& name)
{
  std::string unique = name;
  for (int number = 2; !taken.insert(unique).second; ++number)
    unique = name + std::to_string(number);
  return unique;
}

} // namespace cli::skeleton
