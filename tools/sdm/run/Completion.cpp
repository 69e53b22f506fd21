#include "Completion.h"

#include "CommandFunctions.h"
#include "Commands.h"
#include "FaultWords.h"
#include "Words.h"

namespace cli
{
namespace
{

bool fits(Expects expects, const MapItem& item)
{
  switch (expects)
  {
  case Expects::rootIds:
  case Expects::prefix:
    return true;
  case Expects::databaseIds:
  case Expects::idsAndValues:
    return !item.isLocal();
  case Expects::localIdAndValue:
    return item.isLocal();
  default:
    return false;
  }
}

std::vector<std::string> ids(Expects expects, const ItemTable& items)
{
  std::vector<std::string> list;
  for (const std::string& rootId : items.rootIds())
  {
    if (fits(expects, *items.find(rootId)))
      list.push_back(rootId);
  }
  return list;
}

/// Everything that may stand behind these arguments.
std::vector<std::string> choices(const Command& command, const Arguments& before, const ItemTable& items)
{
  const std::size_t argument = before.size();
  if (argument >= command.most)
    return {};
  switch (command.expects)
  {
  case Expects::command:
    return commandNames();
  case Expects::level:
    return {"0", "1", "2", "3", "4", "5", "6"};
  case Expects::faultWords:
    return faultWordsAfter(before);
  case Expects::idsAndValues:
    return argument % 2 == 0 ? ids(command.expects, items) : std::vector<std::string>();
  case Expects::localIdAndValue:
    return argument == 0 ? ids(command.expects, items) : std::vector<std::string>();
  default:
    return ids(command.expects, items);
  }
}

} // namespace

std::vector<std::string> completions(const std::string& line, const ItemTable& items)
{
  std::vector<std::string> words = splitWords(line).list;
  const bool atNewWord = line.empty() || line.back() == ' ' || line.back() == '\t';
  const std::string begun = atNewWord || words.empty() ? "" : words.back();
  if (!begun.empty())
    words.pop_back();

  std::vector<std::string> known;
  if (words.empty())
    known = commandNames();
  else if (const Command* command = findCommand(words.front()))
  {
    const bool takesJson = command->arguments.rfind("[--json]", 0) == 0;
    const bool hasJson = takesJson && words.size() > 1 && words[1] == jsonWord;
    known = choices(*command, {words.begin() + (hasJson ? 2 : 1), words.end()}, items);
    if (takesJson && words.size() == 1 && !begun.empty() && begun.front() == '-')
      known.emplace_back(jsonWord);
  }

  std::vector<std::string> matching;
  for (const std::string& word : known)
  {
    if (word.compare(0, begun.size(), begun) == 0)
      matching.push_back(word);
  }
  return matching;
}

} // namespace cli
