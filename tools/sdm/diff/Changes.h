// Takes changes down; and who looks for which.
#pragma once

#include <string>
#include <vector>

#include "Change.h"
#include "Side.h"

namespace cli::diff
{

/// An item of the old map and what became of it in the new one.
struct Pair
{
  const ItemText* before;
  const ItemText* after;
};

/// The changes of two maps so far.
class Changes
{
public:
  Changes(const Side& oldMap, const Side& newMap) : oldSide(oldMap), newSide(newMap)
  {
  }

  const Side& before() const
  {
    return oldSide;
  }
  const Side& after() const
  {
    return newSide;
  }

  /// A change of a pair, with what the maps say in one column. The change may be added to until the next one.
  Change& add(const char* rule, const Pair& pair, Column column, const std::string& what);

  /// A change with texts of its own: `subject` as it stands in the map, `text` safe to show. An item that is null has
  /// no place; the column is where the others are shown.
  Change& add(const char* rule, std::string_view subject, const Pair& pair, Column column, std::string text);

  /// "\"5\"", or a mark in its place for the value of a secret.
  std::string valueBefore(const Pair& pair, Column column) const;
  std::string valueAfter(const Pair& pair, Column column) const;

  bool isSecret(const Pair& pair) const;

  std::vector<Change> take()
  {
    return std::move(all);
  }

private:
  const Side& oldSide;
  const Side& newSide;
  std::vector<Change> all;
};

/// Says what becomes of an item of the local store, where that differs from what its rule says.
void useLocalEffects(Change& change);

/// Which items of the two maps are the same one, by root id and by cell.
struct Matching
{
  /// Found by requests in both maps.
  std::vector<Pair> pairs;
  /// Pairs among them whose root ids differ.
  std::vector<Pair> renamed;
  std::vector<const ItemText*> added;
  std::vector<const ItemText*> removed;
};

Matching matched(const Side& oldMap, const Side& newMap);

/// "Schema.Column", with the row in brackets, "the local store" for an item of none; safe to show.
std::string placeText(const ItemText& item);

/// What came, went, or got another name or store.
void lookForItems(const Matching& matching, Changes& changes);
/// What differs in the columns of a pair.
void lookForColumns(const Pair& pair, Changes& changes);
/// Which item reads a cell, and how a schema is read.
void lookForCells(const Matching& matching, Changes& changes);
void lookForSchemas(Changes& changes);
/// Lines that requests do not find.
void lookForDuplicates(Changes& changes);

} // namespace cli::diff
