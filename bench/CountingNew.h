// What the program asked of the heap so far.
#pragma once

#include <cstddef>

#include "Scenarios.h"

namespace cost
{

struct Heap
{
  /// Every request counts, whether its memory was given back or not.
  std::size_t requests = 0;
  /// Of what is held now: as asked for.
  std::size_t bytes = 0;
};

extern Heap heap;

/// How often an operation asks, once it has been run before.
std::size_t requestsOf(const bench::Run& run);

} // namespace cost
