// Words beside a secret are masked unless they are known to be none.
#include "CommandText.h"

#include <algorithm>

#include "CommandFunctions.h"
#include "Commands.h"
#include "base/Suggestion.h"
#include "base/Words.h"

namespace cli
{
namespace
{

constexpr const char* unreadable = "\"";

/// What a word may be.
enum class Kind
{
  harmless,
  secret,
  unknown ///< beside what nobody knows, so that it may be a secret
};

class CommandMask
{
public:
  CommandMask(const std::vector<std::string>& itsWords, const ItemTable& itemTable, const Masking& itsMasking)
      : words(itsWords), items(itemTable), masking(itsMasking), besideSecret(namesSecret())
  {
  }

  Kind kindOf(std::size_t number) const
  {
    const std::string& word = words[number];
    if (isItem(word) || (number == 0 && isCommand()) || (number == 1 && word == jsonWord))
      return isValue(number) ? kindOfValue(number) : Kind::harmless;
    if (besideSecret)
      return isValue(number) ? kindOfValue(number) : Kind::secret;
    if (!isCommand())
      return isTypingError(number) ? Kind::harmless : Kind::unknown;
    if (isValue(number))
      return kindOfValue(number);
    return takesPairs() && followsUnknownItem(number) ? Kind::unknown : Kind::harmless;
  }

private:
  bool namesSecret() const
  {
    return std::any_of(words.begin(), words.end(), [&](const std::string& word) { return masking.isSecret(word); });
  }

  bool isItem(const std::string& word) const
  {
    return items.find(word) != nullptr;
  }

  bool isCommand() const
  {
    return findCommand(words[0]) != nullptr;
  }

  bool takesPairs() const
  {
    return words[0] == "set" || words[0] == "changed";
  }

  bool isValue(std::size_t number) const
  {
    return takesPairs() && number > 0 && number % 2 == 0;
  }

  /// The id of a secret that was mistyped is one that nobody knows. Who forgot quotes may have the secret's parts in
  /// any place.
  Kind kindOfValue(std::size_t number) const
  {
    const std::string& rootId = words[number - 1];
    if (masking.isSecret(rootId) || (besideSecret && !isItem(rootId)))
      return Kind::secret;
    return isItem(rootId) ? Kind::harmless : Kind::unknown;
  }

  bool followsUnknownItem(std::size_t number) const
  {
    for (std::size_t i = 1; i < number; i += 2)
      if (!isItem(words[i]))
        return true;
    return false;
  }

  /// A word at the place of a command that is nearly one; any other may be what somebody pasted there.
  bool isTypingError(std::size_t number) const
  {
    return number == 0 && !didYouMean(words[0], commandNames()).empty();
  }

  const std::vector<std::string>& words;
  const ItemTable& items;
  const Masking& masking;
  const bool besideSecret;
};

std::string quoted(const std::string& word)
{
  if (!word.empty() && word.front() != '#' && word.find_first_of(" \t\"'\\") == std::string::npos)
    return word;
  std::string text = "\"";
  for (const char c : word)
    text += (c == '"' || c == '\\' ? std::string("\\") : std::string()) + c;
  return text + "\"";
}

} // namespace

std::string joinedWords(const std::vector<std::string>& words)
{
  std::string line;
  for (const std::string& word : words)
    line += (line.empty() ? "" : " ") + quoted(word);
  return line;
}

std::string maskedCommand(const std::string& line, const ItemTable& items, const Masking& masking,
                          transcript::Secrets& secrets, const std::set<std::size_t>& secretWords)
{
  const Words words = splitWords(line);
  if (!words.problem.empty())
    return unreadable;
  std::vector<std::string> masked;
  const CommandMask mask(words.list, items, masking);
  for (std::size_t i = 0; i < words.list.size(); ++i)
  {
    const std::string& word = words.list[i];
    const Kind kind = mask.kindOf(i);
    if (secretWords.count(i) != 0 || kind == Kind::secret || transcript::isSecretName(word) ||
        secrets.without(word) != word)
      masked.push_back(secrets.named(word));
    else
      masked.push_back(kind == Kind::unknown ? secrets.namedApart(word) : word);
  }
  return joinedWords(masked);
}

} // namespace cli
