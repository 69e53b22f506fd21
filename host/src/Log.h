// How the host platform logs: every line under one module, with the source that wrote it.
//
// Both are macros, as those of the library are: a closed gate costs no more than the question, and a line knows where
// it stands. The lock's own lines go under another module, see Semaphore.cpp.
#pragma once

#include <logAppUni.h>

#include <array>
#include <cstddef>
#include <string_view>

namespace host
{
/// A source's path from "host/src/" on, so that what is built names no folder of its build. `Size` has room for all.
template <std::size_t Size>
constexpr std::array<char, Size> sourceName(std::string_view path)
{
  const std::size_t begin = path.rfind("host/src/");
  std::array<char, Size> name{};
  std::size_t length = 0;
  for (const char character : path.substr(begin == std::string_view::npos ? 0 : begin))
    name[length++] = character;
  return name;
}
} // namespace host

/// A line that is written whatever the gate says.
#define SDM_HOST_LOG(level, ...)                                                                                       \
  do                                                                                                                   \
  {                                                                                                                    \
    static constexpr auto sdmSource = host::sourceName<sizeof(__FILE__)>(__FILE__);                                    \
    logAppUni("HostPlatform", sdmSource.data(), level, __LINE__, __VA_ARGS__);                                         \
  } while (false)

/// A line that is written while the gate is open for its level.
#define SDM_HOST_TRACE(level, ...)                                                                                     \
  do                                                                                                                   \
  {                                                                                                                    \
    if (loggingOnAppUni("HostPlatform", level))                                                                        \
      SDM_HOST_LOG(level, __VA_ARGS__);                                                                                \
  } while (false)
