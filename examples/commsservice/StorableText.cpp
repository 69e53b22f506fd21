#include "StorableText.h"

#include <cstddef>

namespace commsservice
{
namespace
{

/// How many bytes follow a leading one; -1 for a byte that leads nothing.
int followersOf(unsigned char lead)
{
  if (lead < 0x80)
    return 0;
  if (lead >= 0xc2 && lead < 0xe0)
    return 1;
  if (lead >= 0xe0 && lead < 0xf0)
    return 2;
  return lead >= 0xf0 && lead < 0xf5 ? 3 : -1;
}

/// The smallest character that needs so many bytes behind the first; a smaller one is written too long.
char32_t smallestWith(int followers)
{
  return followers == 3 ? 0x10000 : followers == 2 ? 0x800 : followers == 1 ? 0x80 : 0;
}

bool isXmlCharacter(char32_t character)
{
  if (character < 0x20)
    return character == '\t' || character == '\n' || character == '\r';
  const bool surrogate = character >= 0xd800 && character <= 0xdfff;
  return !surrogate && character != 0xfffe && character != 0xffff && character <= 0x10ffff;
}

} // namespace

bool isStorableText(const std::string& text)
{
  for (std::size_t place = 0; place < text.size();)
  {
    const auto lead = static_cast<unsigned char>(text[place++]);
    const int followers = followersOf(lead);
    if (followers < 0 || text.size() - place < static_cast<std::size_t>(followers))
      return false;
    char32_t character = followers == 0 ? lead : lead & (0x3fU >> followers);
    for (int i = 0; i < followers; ++i)
    {
      const auto byte = static_cast<unsigned char>(text[place++]);
      if ((byte & 0xc0U) != 0x80)
        return false;
      character = (character << 6U) | (byte & 0x3fU);
    }
    if (character < smallestWith(followers) || !isXmlCharacter(character))
      return false;
  }
  return true;
}

} // namespace commsservice
