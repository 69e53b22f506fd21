// Prefix test, for reasons and root ids.
#pragma once

#include <string>

namespace sdm
{

/// Everything begins with the empty text.
inline bool beginsWith(const std::string& text, const std::string& prefix)
{
  return text.compare(0, prefix.size(), prefix) == 0;
}

} // namespace sdm
