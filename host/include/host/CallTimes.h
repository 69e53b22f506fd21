// How long callbacks took, by name.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/HostExport.h"

namespace host
{
/// A call belongs to the first of these that it stays below; what is longer than all has a place of its own behind
/// them.
constexpr std::array<std::chrono::microseconds, 5> callTimeBounds = {
    std::chrono::microseconds(100), std::chrono::milliseconds(1), std::chrono::milliseconds(10),
    std::chrono::milliseconds(100), std::chrono::seconds(1)};

/// The calls of one name that are over. A call takes as long as everything that it called.
struct SDM_HOST_EXPORT CallTime
{
  /// As its marks were named.
  std::string name;
  /// How many there were.
  std::uint64_t calls = 0;
  /// How long all of them took together.
  std::chrono::microseconds total{0};
  /// How long the longest of them took.
  std::chrono::microseconds longest{0};
  /// How many belong to each of `callTimeBounds`, and last those that are longer than all bounds.
  std::array<std::uint64_t, callTimeBounds.size() + 1> histogram{};
};

/// Of this process, what took longest in all first. From 10,000 names on, new ones are counted together as "(others)".
/// May be called from any thread, as may the other.
SDM_HOST_EXPORT std::vector<CallTime> callTimes();

/// Begins anew.
SDM_HOST_EXPORT void forgetCallTimes();
} // namespace host
