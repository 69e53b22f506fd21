// Requests as statements on a schema's table.
#pragma once

#include <optional>
#include <string>

#include "Connection.h"
#include "DasCatalog.h"
#include "DasRequest.h"

namespace host
{
/// Carries out a read and returns its reply. Throws `Refusal` when the request does not fit the table.
[[nodiscard]] std::string readTable(Connection& database, const DasTable& table, const DasRequest& request);

/// Carries out an update, all of it or nothing, and returns its reply. Throws `Refusal` when the request does not fit
/// the table. Takes the values out of the request.
[[nodiscard]] std::string updateTable(Connection& database, const DasTable& table, DasRequest& request);

/// One cell as stored; nullopt when there is none. `row` is empty twice for a table without index.
std::optional<std::string> readCell(Connection& database, const DasTable& table, const std::string& column,
                                    const DasCell& row);

/// What the table was provisioned with, and all its rows.
SchemaDefinition definitionOf(Connection& database, const DasTable& table);
} // namespace host
