// Small questions about texts. Letters are ASCII letters, whatever the locale is.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace cli
{

inline bool beginsWith(std::string_view text, std::string_view beginning)
{
  return text.substr(0, beginning.size()) == beginning;
}

inline std::string lowered(std::string_view text)
{
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return lower;
}

} // namespace cli
