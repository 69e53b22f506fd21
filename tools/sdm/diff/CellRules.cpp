// Cells and schemas of the database.
#include "RulesBySubject.h"

namespace cli::diff
{
namespace
{

constexpr const char* leftBehind =
    "the value stays in the old cell, and the item starts with its default, or with what an "
    "earlier map left in the new cell";
constexpr const char* writtenElsewhere = "nothing is lost; what is set from now on goes into the new cell";
constexpr const char* moving =
    "A value is found by schema, column and index value. The library moves none of them: the one that was stored stays "
    "where it was, unread, and seems to be lost. A migration has to copy it before the first start with the new map; "
    "on "
    "the way back the old map finds the old value again.";

} // namespace

std::vector<Rule> cellRules()
{
  return {
      {"cell-moved-schema", Severity::error, "cell-moved-schema", "An item moved to another schema.", leftBehind,
       writtenElsewhere, moving},
      {"cell-moved-column", Severity::error, "cell-moved-column", "An item moved to another column of its schema.",
       leftBehind, writtenElsewhere, moving},
      {"cell-moved-index-name", Severity::error, "cell-moved-index-name",
       "An item names another index column, and its schema does not follow.",
       "the value stays in the old row, and what is set from now on goes to a row of the other index column",
       "what is set from now on goes to a row of the other index column",
       "Update requests name the row by the item's own index column; replies are read by the index column of the last "
       "item of the schema that has a setter. When the two differ, what is stored and what is read are not the same "
       "row."},
      {"cell-moved-index-value", Severity::error, "cell-moved-index-value",
       "An item moved to another row of its schema.", leftBehind, writtenElsewhere, moving},
      {"cell-reader-changed", Severity::error, "cell-reader-changed", "A cell is read by the item of another root id.",
       "the stored value of the one item is handed to the setter of the other",
       "nothing changes until a value is set through either item",
       "What a start reads from a cell goes to the last item of the cell that has a setter. That is another item now, "
       "while the root id of the old one is still in use or that of the new one was: two meanings meet in one cell. "
       "Give "
       "the new item a cell of its own, or let a migration move the old value first."},
      {"schema-index-changed", Severity::error, "schema-index-changed", "A schema is read by another index column.",
       "the rows cannot be told apart by the new index column, so their values reach no item; the host's database "
       "refuses "
       "the schema",
       "rows are written by the new index column from now on",
       "The index column of a schema is that of its last item with a setter. The table of a device has the old one as "
       "its "
       "key: the host platform refuses to start with it, and another database may drop the rows. Give the rows a new "
       "schema, or migrate the table."},
      {"schema-newly-asked", Severity::note, "schema-no-longer-asked", "A start asks the database for one more schema.",
       "what the table holds is handed to the setters of its items",
       "the database is asked for a table that it may not have yet, and says so in the log",
       "A start reads each schema that has an item with a setter. The database has to provide the table before."},
      {"schema-no-longer-asked", Severity::warning, "schema-newly-asked",
       "A start does not ask the database for a schema any more.",
       "the table stays, and nothing is read from it at a start", "nothing changes",
       "A start reads each schema that has an item with a setter; this one has none left. Its table stays on the "
       "device "
       "with all that is in it."},
  };
}

} // namespace cli::diff
