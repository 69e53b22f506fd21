// Requests to the host's database by themselves, without the manager.
#pragma once

#include <vector>

#include "Scenarios.h"

namespace bench
{

/// One request, or one a schema, on tables of ten columns: reads of a cell and of a schema, durable updates.
std::vector<Scenario> dasOperations();

} // namespace bench
