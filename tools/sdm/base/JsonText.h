// JSON out of files that anybody may have written.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace cli
{

/// Why a text is not taken, in words that do not quote it.
class JsonError : public std::runtime_error
{
public:
  using std::runtime_error::runtime_error;
};

/// What the text holds. Throws `JsonError` for one that is no JSON, and for one with more levels than any of our files
/// has: copying, comparing and writing take a call a level, and the stack would end before the levels do.
nlohmann::ordered_json jsonOf(std::string_view text);

} // namespace cli
