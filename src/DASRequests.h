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

/// The beginning of a batched update; cell groups and the schema's end are still to follow.
std::string beginUpdateRequest(const std::string& schema);

/// One cell of a batched update, inside an entry when the item has a row. `cell` is escaped or encrypted.
std::string updateCellGroup(const ManagedDataItem& item, const std::string& cell);

/// A whole update request of one cell, whose text is inserted as it is.
std::string updateCellRequest(const ManagedDataItem& item, const std::string& cell);

/// The end of every request.
extern const char* const schemaEnd;

} // namespace sdm
