// The parser stops at a depth that none of our files has.
#include "JsonText.h"

namespace cli
{
namespace
{

using Json = nlohmann::ordered_json;

constexpr int deepestLevel = 16;

/// Keeps everything, as far as it is not too deep.
bool keep(int depth, Json::parse_event_t /*event*/, const Json& /*parsed*/)
{
  if (depth > deepestLevel)
    throw JsonError("this is nested deeper than " + std::to_string(deepestLevel) + " levels");
  return true;
}

} // namespace

Json jsonOf(std::string_view text)
{
  try
  {
    return Json::parse(text, keep);
  }
  catch (const Json::parse_error& error)
  {
    throw JsonError("this is no JSON, from byte " + std::to_string(error.byte) + " on");
  }
  catch (const Json::exception&)
  {
    throw JsonError("this is JSON with a number that is none");
  }
}

} // namespace cli
