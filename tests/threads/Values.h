// Values that tell who set them and what is to become of them: "T3-120-accept" comes from thread 3's request 120.
#pragma once

#include <string>

namespace threads
{

/// The request that a value belongs to, as "T3-120"; "default" for a default and "" for a text that nobody set.
inline std::string requestOf(const std::string& value)
{
  if (value == "default")
    return value;
  return value.empty() || value.front() != 'T' ? "" : value.substr(0, value.rfind('-'));
}

/// What a setter is to do with it.
inline std::string verbOf(const std::string& value)
{
  return value.empty() || value.front() != 'T' ? "accept" : value.substr(value.rfind('-') + 1);
}

/// A value as it was set, neither torn nor mixed up.
inline bool isWhole(const std::string& value)
{
  static const std::string verbs = " accept same repeat badgroup ";
  return value == "default" ||
         (!requestOf(value).empty() && verbs.find(" " + verbOf(value) + " ") != std::string::npos);
}

} // namespace threads
