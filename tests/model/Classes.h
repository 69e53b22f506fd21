// What lives came across, to see that they reach what is worth judging.
#pragma once

#include <ostream>

#include "Player.h"

namespace judge
{

/// Counts a life under each class that it belongs to.
void classify(const Life& life, const Trace& trace);

/// How many lives there were of each class; whether there was at least one of each.
bool reportClasses(std::ostream& out);

} // namespace judge
