// The table of commands says which words may stand at the cursor.
#include "Completion.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include "CommandFunctions.h"
#include "Commands.h"
#include "FaultWords.h"
#include "base/Shown.h"
#include "base/Text.h"
#include "base/Words.h"

namespace cli
{
namespace
{

bool fits(Expects expects, const MapItem& item)
{
  switch (expects)
  {
  case Expects::rootIds:
  case Expects::part:
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

bool contains(const std::vector<std::string>& words, const std::string& word)
{
  return std::find(words.begin(), words.end(), word) != words.end();
}

/// The words "[--NAME]" of its usage.
std::vector<std::string> optionsOf(const Command& command)
{
  std::vector<std::string> options;
  std::istringstream words(command.arguments);
  for (std::string word; words >> word;)
  {
    if (beginsWith(word, "[--"))
      options.push_back(word.substr(1, word.size() - 2));
  }
  return options;
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
    const std::vector<std::string> options = optionsOf(*command);
    Arguments before;
    std::copy_if(words.begin() + 1, words.end(), std::back_inserter(before),
                 [&](const std::string& word) { return !contains(options, word); });
    known = choices(*command, before, items);
    const bool wantsOption = before.empty() && !begun.empty() && begun.front() == '-';
    std::copy_if(options.begin(), options.end(), std::back_inserter(known),
                 [&](const std::string& option) { return wantsOption && !contains(words, option); });
  }

  std::vector<std::string> matching;
  for (const std::string& word : known)
  {
    // What could steer the terminal is not for typing either.
    if (beginsWith(word, begun) && isShowable(word))
      matching.push_back(word);
  }
  return matching;
}

} // namespace cli
