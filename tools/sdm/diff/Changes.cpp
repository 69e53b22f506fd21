// A change is noted with its place in both maps, and without the values of secrets.
#include "Changes.h"

#include <utility>

namespace cli::diff
{

std::string placeText(const ItemText& item)
{
  if (item.isLocal())
    return "the local store";
  const auto name = [&](Column column)
  {
    const std::string text = quoted(item[column]);
    return text.substr(1, text.size() - 2);
  };
  std::string text = name(Column::dasSchema) + "." + name(Column::dasItem);
  if (item.has(Column::dasIndexName) || item.has(Column::dasIndexValue))
    text += "[" + name(Column::dasIndexName) + "=" + name(Column::dasIndexValue) + "]";
  return text;
}

bool Changes::isSecret(const Pair& pair) const
{
  return (pair.before != nullptr && oldSide.isSecret(*pair.before)) ||
         (pair.after != nullptr && newSide.isSecret(*pair.after));
}

namespace
{

bool isValue(Column column)
{
  return column == Column::defaultValue || column == Column::alternativeDefault;
}

std::string raw(const ItemText* item, Column column)
{
  return item == nullptr ? "" : std::string((*item)[column]);
}

} // namespace

std::string Changes::valueBefore(const Pair& pair, Column column) const
{
  return isValue(column) && isSecret(pair) ? secretBefore : quoted((*pair.before)[column]);
}

std::string Changes::valueAfter(const Pair& pair, Column column) const
{
  return isValue(column) && isSecret(pair) ? secretAfter : quoted((*pair.after)[column]);
}

Change& Changes::add(const char* rule, std::string_view subject, const Pair& pair, Column column, std::string text)
{
  Change change;
  change.rule = findRule(rule);
  change.subject = subject;
  change.text = std::move(text);
  change.stored = change.rule->stored;
  change.notStored = change.rule->notStored;
  const auto isLocal = [](const ItemText* item) { return item == nullptr || item->isLocal(); };
  if (isLocal(pair.before) && isLocal(pair.after))
    useLocalEffects(change);
  if (pair.before != nullptr)
    change.oldPlace = pair.before->place(column);
  if (pair.after != nullptr)
    change.newPlace = pair.after->place(column);
  all.push_back(std::move(change));
  return all.back();
}

Change& Changes::add(const char* rule, const Pair& pair, Column column, const std::string& what)
{
  const std::string_view rootId = (*pair.after)[Column::rootId];
  Change& change =
      add(rule, rootId, pair, column,
          what + " of " + quoted(rootId) + " was " + valueBefore(pair, column) + " and is " + valueAfter(pair, column));
  change.secret = isValue(column) && isSecret(pair);
  change.before = change.secret ? secretBefore : raw(pair.before, column);
  change.after = change.secret ? secretAfter : raw(pair.after, column);
  return change;
}

} // namespace cli::diff
