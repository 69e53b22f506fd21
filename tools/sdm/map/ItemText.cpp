// Quoted pieces are cut before they are made safe to show.
#include "ItemText.h"

#include "base/Shown.h"

namespace cli
{
namespace
{

constexpr std::size_t longestQuote = 60;

} // namespace

std::string quoted(std::string_view text)
{
  std::string clean = shown(std::string(text.substr(0, 4 * longestQuote)));
  return "\"" + clipped(clean, longestQuote) + "\"";
}

} // namespace cli
