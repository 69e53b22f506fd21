// Decides by the words of a line whether it holds a secret.
#include "PromptLines.h"

#include <algorithm>

#include "CommandFunctions.h"
#include "base/Shown.h"
#include "base/Words.h"

namespace cli
{
namespace
{

bool namesItems(Expects expects)
{
  return expects == Expects::rootIds || expects == Expects::databaseIds || expects == Expects::idsAndValues ||
         expects == Expects::localIdAndValue;
}

} // namespace

bool holdsSecret(const std::string& line, const Masking& masking)
{
  const Words words = splitWords(line);
  for (std::size_t i = 1; i < words.list.size(); ++i)
  {
    if (masking.isSecret(words.list[i]))
      return true;
  }
  return false;
}

bool mayBeKept(const std::string& line, const Session& session)
{
  const Words words = splitWords(line);
  const Command* command = words.list.empty() ? nullptr : findCommand(words.list.front());
  if (command == nullptr || !words.problem.empty())
    return false;
  const std::size_t step = command->expects == Expects::idsAndValues ? 2 : 1;
  const std::size_t last = command->expects == Expects::localIdAndValue ? 2 : words.list.size();
  const bool takesIds = namesItems(command->expects);
  for (std::size_t i = 1; takesIds && i < std::min(last, words.list.size()); i += step)
  {
    const std::string& word = words.list[i];
    if (session.running.items().find(word) == nullptr && word != jsonWord)
      return false;
  }
  return session.running.service().watch().tellable(line) == line;
}

bool askForSecret(LineReader& reader, Session& session, std::string& line)
{
  const Words words = splitWords(line);
  const auto& list = words.list;
  if (list.size() % 2 != 0 || list.empty() || list.front() != "set")
    return true;
  const MapItem* item = session.running.items().find(list.back());
  if (item == nullptr || !session.running.masking().isSecret(*item))
    return true;
  std::string value;
  if (!reader.askHidden("new value of " + shown(item->rootId) + " (not shown): ", value))
    return false;
  line += " \"";
  for (const char c : value)
    line += (c == '"' || c == '\\' ? std::string("\\") : std::string()) + c;
  line += "\"";
  return true;
}

} // namespace cli
