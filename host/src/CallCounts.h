// Where the durations of calls go.
#pragma once

#include <chrono>
#include <string>

namespace host
{
/// A call for which there is no memory is not counted.
void countCall(const std::string& name, std::chrono::steady_clock::duration took) noexcept;
} // namespace host
