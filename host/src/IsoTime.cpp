// The second is rounded down, not towards zero, so that times before 1970 are right as well.
#include "host/IsoTime.h"

#include <array>
#include <cstdio>
#include <ctime>

namespace host
{
namespace
{
using Calendar = std::tm* (*)(const std::time_t*, std::tm*);

std::string text(std::chrono::system_clock::time_point when, Calendar calendar)
{
  const auto sinceEpoch = when.time_since_epoch();
  // Down and not towards zero: a time before 1970 belongs to the second that began before it.
  const auto second = std::chrono::floor<std::chrono::seconds>(sinceEpoch);
  const auto rest = std::chrono::floor<std::chrono::milliseconds>(sinceEpoch - second);
  const auto seconds = static_cast<std::time_t>(second.count());
  std::tm parts = {};
  std::array<char, 64> made{};
  if (calendar(&seconds, &parts) == nullptr)
    return "@" + std::to_string(second.count());
  const std::size_t length = std::strftime(made.data(), made.size(), "%Y-%m-%dT%H:%M:%S", &parts);
  std::snprintf(made.data() + length, made.size() - length, ".%03d", static_cast<int>(rest.count()));
  return made.data();
}
} // namespace

std::string isoTime(std::chrono::system_clock::time_point when)
{
  const std::string made = text(when, &::gmtime_r);
  return made.front() == '@' ? made : made + "Z";
}

std::string localTime(std::chrono::system_clock::time_point when)
{
  return text(when, &::localtime_r);
}
} // namespace host
