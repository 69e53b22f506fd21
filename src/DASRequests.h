// The texts of the requests to the Data Access Service. Names and index values are inserted as they are.
#pragma once

#include <string>

class ManagedDataItem;

namespace sdm
{

/// Every value of one schema.
std::string readSchemaRequest(const std::string& schema);

/// One column, of all rows.
std::string readColumnRequest(const ManagedDataItem& item);

/// One column of the item's own row.
std::string readCellRequest(const ManagedDataItem& item);

/// The beginning of a batched update; cells and the end are still to follow.
std::string beginUpdateRequest(const std::string& schema);

/// Adds one cell to a batched update, inside an entry when the item has a row. `cell` is escaped or encrypted.
void addUpdateCell(std::string& request, const ManagedDataItem& item, const std::string& cell);

/// Ends a batched update: the text is a whole request from then on.
void endUpdateRequest(std::string& request);

/// A whole update request of one cell, whose text is inserted as it is.
std::string updateCellRequest(const ManagedDataItem& item, const std::string& cell);

} // namespace sdm
