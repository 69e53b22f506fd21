// The log of this platform: closed, unless somebody wants to know what an open one costs.
#pragma once

#include <cstddef>

namespace bench
{

struct Log
{
  bool open = false;
  /// Lines written so far, and texts masked for them.
  std::size_t lines = 0;
  std::size_t masked = 0;
};

extern Log log;

} // namespace bench
