// The tables that the items of a map need in the database.
#pragma once

#include <vector>

#include "ItemTable.h"
#include "host/DataAccessService.h"

namespace cli
{

/// The tables of the map's items, in the order of the map. Throws `host::Error` when items of one schema name
/// different index columns.
std::vector<host::SchemaDefinition> schemasOf(const ItemTable& items);

} // namespace cli
