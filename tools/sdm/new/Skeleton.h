// The project of a service, made from its item map: every file with its text.
#pragma once

#include <map>
#include <string>

#include "map/ItemTable.h"

namespace cli::skeleton
{

/// Whether a service may be called so: letters, digits, '-' and '_', with a letter first, 64 at most.
bool isServiceName(const std::string& name);

/// The texts of all files but the map's, by their paths. Formatted as clang-format leaves them.
std::map<std::string, std::string> filesOf(const std::string& name, const ItemTable& table);

} // namespace cli::skeleton
