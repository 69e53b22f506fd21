// The parts of a skeleton's code that depend on the map.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "SkeletonFields.h"
#include "map/ItemTable.h"

namespace cli::skeleton
{

/// The members of the structure of settings, with their defaults. The fields of one schema stand together.
std::string settingFields(const std::vector<SkeletonField>& fields);

/// First a function for each schema, which registers its callbacks, then the calls of these functions.
std::pair<std::string, std::string> registration(const std::vector<SkeletonField>& fields);

/// A function for each group, which judges its settings, and the one that chooses among them.
std::string groupRules(const ItemTable& table, const std::vector<SkeletonField>& fields);

} // namespace cli::skeleton
