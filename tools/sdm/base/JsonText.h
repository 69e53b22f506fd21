// Reads JSON from files that anybody may have written, and writes JSON.
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

/// The text of a value in one line, or in many with so many blanks a level. What is no UTF-8 is replaced, so that the
/// text stays JSON. For `nlohmann::json` and `nlohmann::ordered_json`.
template <class Json>
std::string jsonText(const Json& value, int indent = -1)
{
  return value.dump(indent, ' ', false, Json::error_handler_t::replace);
}

} // namespace cli
