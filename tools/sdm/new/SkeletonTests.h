// The parts of a skeleton's tests that depend on the map.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "SkeletonFields.h"
#include "map/ItemTable.h"

namespace cli::skeleton
{

/// Tests of values that have not the type of their setting, for one setting of each type.
std::string typeTests(const std::vector<SkeletonField>& fields);

/// The same for a member of a group.
std::string groupTests(const std::vector<SkeletonField>& fields);

/// What a test of a whole life needs to know of one item, by the names in the template; empty when the map has no item
/// that is fit for that.
std::map<std::string, std::string> lifeOf(const ItemTable& table, const std::vector<SkeletonField>& fields);

} // namespace cli::skeleton
