#include "record/CommandText.h"

#include <algorithm>

#include "run/CommandFunctions.h"
#include "run/Commands.h"
#include "run/Words.h"

namespace cli::record
{
namespace
{

constexpr const char* unreadable = "\"";

class CommandMask
{
public:
  CommandMask(const std::vector<std::string>& itsWords, const ItemTable& itemTable, const Masking& itsMasking)
      : words(itsWords), items(itemTable), masking(itsMasking), besideSecret(namesSecret())
  {
  }

  bool isSecret(std::size_t number) const
  {
    if (number == 0)
      return besideSecret && findCommand(words[0]) == nullptr && items.find(words[0]) == nullptr;
    const bool pairs = words[0] == "set" || words[0] == "changed";
    if (pairs && number % 2 == 0)
      return isSecretValueOf(words[number - 1]);
    const bool isJsonWord = number == 1 && words[number] == jsonWord;
    return besideSecret && !isJsonWord && items.find(words[number]) == nullptr;
  }

private:
  bool namesSecret() const
  {
    return std::any_of(words.begin(), words.end(), [&](const std::string& word) { return masking.isSecret(word); });
  }

  /// Who forgot quotes may have the secret's parts in any place.
  bool isSecretValueOf(const std::string& rootId) const
  {
    return masking.isSecret(rootId) || (besideSecret && items.find(rootId) == nullptr);
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

std::string maskedCommand(const std::string& line, const ItemTable& items, const Masking& masking, Secrets& secrets,
                          const std::set<std::size_t>& secretWords)
{
  const Words words = splitWords(line);
  if (!words.problem.empty())
    return unreadable;
  std::vector<std::string> masked;
  const CommandMask mask(words.list, items, masking);
  for (std::size_t i = 0; i < words.list.size(); ++i)
  {
    const std::string& word = words.list[i];
    const bool isSecret = secretWords.count(i) != 0 || mask.isSecret(i) || isSecretName(word);
    masked.push_back(isSecret || secrets.without(word) != word ? secrets.named(word) : word);
  }
  return joinedWords(masked);
}

} // namespace cli::record
