// Counts how often SQLite is asked to prepare a statement, by whatever library.
#pragma once

#include <string>

namespace hosttest
{
/// How many statements whose text holds `part` were prepared since the start of the program.
int preparedCount(const std::string& part);
} // namespace hosttest
