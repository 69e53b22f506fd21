// Items that come, go, or get another name or store.
#include "RulesBySubject.h"

namespace cli::diff
{

std::vector<Rule> itemRules()
{
  return {
      {"item-added", Severity::note, "item-removed", "An item is new.",
       "a value that an earlier map left in its place comes back: the start hands it to the setter",
       "the item starts with its default",
       "The new map has an item that the old one has not. A device that once ran a map with this cell, or with this "
       "root "
       "id in the local store, may still hold a value there, and the item takes it up. A map that gave the item "
       "another "
       "root id and another cell shows the same: then its values are lost, and a migration has to move them."},
      {"item-removed", Severity::warning, "item-added", "An item is gone.",
       "the value stays where it is, and nothing reads it; requests for the item are refused as unknown",
       "requests for the item are refused as unknown",
       "The old map has an item that the new one has not, and no item of the new map took its cell over. The library "
       "deletes nothing: what was stored stays on the device, a secret as well, and comes back to life when a later "
       "map "
       "reads the cell again. An item that got another root id and another cell at once shows the same."},
      {"root-id-renamed", Severity::warning, "root-id-renamed", "A cell keeps its item under another root id.",
       "the value is kept, since the cell is the same; requests under the old root id are refused as unknown",
       "nothing is lost; requests under the old root id are refused as unknown",
       "Schema, column and index value are the same, and the old root id is gone. The database is not touched. Whoever "
       "asks by root id has to change with it: management agents, transcripts, subscriptions. What was published to "
       "the "
       "local store under the old root id stays there. Log lines mask values by what the root id says."},
      {"moved-to-local-store", Severity::error, "moved-to-database",
       "An item moved from the database to the local management store.",
       "the value stays in the database, where nothing reads it; the setter gets what the local store holds, which may "
       "be "
       "an old publication",
       "the default is not pushed any more; the setter gets what the local store holds, an empty text when that is "
       "nothing",
       "An item without schema lives in the local management store. Its values do not move by themselves, set requests "
       "are "
       "refused as unknown, and its default, group and encryption have no effect. A migration has to put the value "
       "into "
       "the local store."},
      {"moved-to-database", Severity::error, "moved-to-local-store",
       "An item moved from the local management store to the database.",
       "the value stays in the local store, where nothing reads it; the item starts with its default, or with what an "
       "earlier map left in its cell",
       "the setter gets the default at each start",
       "An item with a schema lives in the database. What the local store holds under its root id is not read any "
       "more, "
       "and change notifications for it are refused as unknown. A migration has to write the value into its cell."},
  };
}

} // namespace cli::diff
