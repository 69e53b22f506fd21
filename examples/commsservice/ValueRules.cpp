#include "ValueRules.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "NetworkValues.h"
#include "StorableText.h"

namespace commsservice
{
namespace
{

constexpr const char* decimalDigits = "0123456789";

bool hasControlCharacter(const std::string& value)
{
  return std::any_of(value.begin(), value.end(),
                     [](char c)
                     {
                       const auto byte = static_cast<unsigned char>(c);
                       return byte < 0x20 || byte == 0x7f;
                     });
}

std::string range(std::size_t shortest, std::size_t longest)
{
  return std::to_string(shortest) + " to " + std::to_string(longest);
}

bool onlyHas(const std::string& value, const char* characters)
{
  return value.find_first_not_of(characters) == std::string::npos;
}

bool isWholeNumber(const std::string& value, long smallest, long largest)
{
  if (value.empty() || !onlyHas(value, decimalDigits) || (value.size() > 1 && value.front() == '0'))
    return false;
  long number = 0;
  const auto [end, problem] = std::from_chars(value.data(), value.data() + value.size(), number);
  return problem == std::errc() && end == value.data() + value.size() && number >= smallest && number <= largest;
}

bool isPlaceName(const std::string& value)
{
  const auto slash = value.find('/');
  if (slash == std::string::npos || slash == 0 || value.back() == '/' || value.size() > 64)
    return false;
  return value.find("//") == std::string::npos &&
         onlyHas(value, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_+-/");
}

} // namespace

ValueRule text(std::size_t shortest, std::size_t longest)
{
  return [=](const std::string& value) -> std::string
  {
    if (value.size() < shortest || value.size() > longest)
      return "must have " + range(shortest, longest) + " characters";
    if (hasControlCharacter(value))
      return "must not contain control characters";
    return isStorableText(value) ? "" : "must be UTF-8 text of characters that can be stored";
  };
}

ValueRule plainText(std::size_t shortest, std::size_t longest)
{
  return [anyText = text(shortest, longest)](const std::string& value) -> std::string
  {
    if (value.find_first_of("&<>\"'") != std::string::npos)
      return "must not contain & < > or quotation marks";
    return anyText(value);
  };
}

ValueRule wholeNumber(long smallest, long largest)
{
  return [=](const std::string& value) -> std::string
  {
    if (isWholeNumber(value, smallest, largest))
      return "";
    return "must be a whole number from " + std::to_string(smallest) + " to " + std::to_string(largest);
  };
}

ValueRule trueOrFalse()
{
  return oneOf({"true", "false"});
}

ValueRule alwaysTrue(const std::string& because)
{
  return [because](const std::string& value) -> std::string
  { return value == "true" ? "" : "must stay true: " + because; };
}

ValueRule oneOf(std::vector<std::string> words)
{
  return [words = std::move(words)](const std::string& value) -> std::string
  {
    if (std::find(words.begin(), words.end(), value) != words.end())
      return "";
    std::string list;
    for (std::size_t i = 0; i < words.size(); ++i)
      list += (i == 0 ? "" : i + 1 == words.size() ? " or " : ", ") + words[i];
    return "must be " + list;
  };
}

ValueRule ipv4Address()
{
  return [](const std::string& value) -> std::string
  {
    const auto address = parseIpv4(value);
    // 0.x.x.x names no host and everything from 224.0.0.0 on is not a single one.
    const bool single = address && (*address >> 24) != 0 && (*address >> 24) < 224;
    return single ? "" : "must be the IPv4 address of a host, such as 192.168.1.20";
  };
}

ValueRule netmask()
{
  return [](const std::string& value) -> std::string
  {
    const auto mask = parseIpv4(value);
    const auto length = mask ? prefixLength(*mask) : std::nullopt;
    return length && *length > 0 ? "" : "must be a netmask, such as 255.255.255.0";
  };
}

ValueRule host()
{
  return [address = ipv4Address()](const std::string& value) -> std::string
  { return isHostName(value) || address(value).empty() ? "" : "must be a host name or an IPv4 address"; };
}

ValueRule port()
{
  return wholeNumber(1, 65535);
}

ValueRule timeZone()
{
  return [](const std::string& value) -> std::string
  { return value == "UTC" || isPlaceName(value) ? "" : "must be UTC or a place such as Europe/Berlin"; };
}

ValueRule dialString()
{
  return [](const std::string& value) -> std::string
  {
    const std::string dialled = !value.empty() && value.front() == '+' ? value.substr(1) : value;
    const bool fits = value.size() <= 32 && (value.empty() || !dialled.empty()) && onlyHas(dialled, "0123456789*#");
    return fits ? "" : "must be at most 32 digits, stars and hashes, with an optional plus before them";
  };
}

ValueRule digits(std::size_t shortest, std::size_t longest)
{
  return [=](const std::string& value) -> std::string
  {
    const bool fits = value.size() >= shortest && value.size() <= longest && onlyHas(value, decimalDigits);
    return fits ? "" : "must be " + range(shortest, longest) + " digits";
  };
}

ValueRule orNone(ValueRule rule)
{
  return [rule = std::move(rule)](const std::string& value) -> std::string
  {
    const std::string refusal = value.empty() ? std::string() : rule(value);
    return refusal.empty() ? refusal : refusal + ", or empty";
  };
}

} // namespace commsservice
