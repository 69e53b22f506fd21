// Lines that requests do not find: earlier ones of a root id that stands in several, and those without a root id.
#include "Changes.h"

#include <array>
#include <map>

namespace cli::diff
{
namespace
{

/// What a line means; two lines that mean the same are the same.
using Meaning = std::array<std::string_view, columnCount>;

Meaning meaningOf(const ItemText& item)
{
  Meaning meaning;
  for (std::size_t i = 0; i < meaning.size(); ++i)
    meaning[i] = item[static_cast<Column>(i)];
  meaning[static_cast<std::size_t>(Column::userData)] = item.isUserData() ? "user" : "";
  meaning[static_cast<std::size_t>(Column::dasEncrypted)] = item.isEncrypted() ? "true" : "";
  return meaning;
}

/// Lines of both maps that mean the same, and that requests do not find.
struct Lines
{
  std::vector<const ItemText*> before;
  std::vector<const ItemText*> after;
};

using Unfound = std::map<Meaning, Lines>;

void gather(const Side& side, std::vector<const ItemText*> Lines::*which, Unfound& unfound)
{
  for (const ItemText& item : side.items())
  {
    if (!side.isFound(item))
      (unfound[meaningOf(item)].*which).push_back(&item);
  }
}

/// Takes one line off a side, if there is one.
bool takeOff(Unfound& unfound, const Meaning& meaning, std::vector<const ItemText*> Lines::*which)
{
  const auto found = unfound.find(meaning);
  if (found == unfound.end() || (found->second.*which).empty())
    return false;
  (found->second.*which).pop_back();
  return true;
}

/// An item that requests find changed places with one that they do not find.
void lookForWinner(const ItemText& was, const ItemText& is, Unfound& unfound, Changes& changes)
{
  if (meaningOf(was) == meaningOf(is))
    return;
  const bool lost = takeOff(unfound, meaningOf(was), &Lines::after);
  const bool rose = takeOff(unfound, meaningOf(is), &Lines::before);
  if (!lost && !rose)
    return;
  const std::string_view rootId = is[Column::rootId];
  changes.add("duplicate-winner-changed", rootId, {&was, &is}, Column::rootId,
              "of the lines with the root id " + quoted(rootId) + " " + std::to_string(was.line().number) +
                  " of the old map counted, and line " + std::to_string(is.line().number) + " of the new one does");
}

void lookForLines(const Lines& lines, Changes& changes)
{
  const auto told = [&](const char* rule, const ItemText& item, const Pair& pair, const char* what)
  {
    Change& change = changes.add(rule, item[Column::rootId], pair, Column::rootId,
                                 "a line with the root id " + quoted(item[Column::rootId]) + " in " + placeText(item) +
                                     " that requests do not find " + what);
    (pair.before != nullptr ? change.before : change.after) = placeText(item);
  };
  for (std::size_t i = lines.before.size(); i < lines.after.size(); ++i)
    told("start-line-added", *lines.after[i], {nullptr, lines.after[i]}, "is new");
  for (std::size_t i = lines.after.size(); i < lines.before.size(); ++i)
    told("start-line-removed", *lines.before[i], {lines.before[i], nullptr}, "is gone");
}

} // namespace

void lookForDuplicates(Changes& changes)
{
  Unfound unfound;
  gather(changes.before(), &Lines::before, unfound);
  gather(changes.after(), &Lines::after, unfound);
  if (unfound.empty())
    return;
  for (const ItemText& is : changes.after().items())
  {
    const ItemText* const was = changes.before().find(is[Column::rootId], is.isLocal());
    if (was != nullptr && changes.after().isFound(is))
      lookForWinner(*was, is, unfound, changes);
  }
  for (const auto& [meaning, lines] : unfound)
    lookForLines(lines, changes);
}

} // namespace cli::diff
