// Follows the table of well-formed sequences: no overlong form, no surrogate, nothing beyond the last code point.
#include "Utf8.h"

namespace host
{
namespace
{
std::size_t lengthByLeadByte(unsigned char lead)
{
  if (lead < 0x80)
    return 1;
  if (lead >= 0xC2 && lead <= 0xDF)
    return 2;
  if (lead >= 0xE0 && lead <= 0xEF)
    return 3;
  if (lead >= 0xF0 && lead <= 0xF4)
    return 4;
  return 0;
}

bool isWellFormed(char32_t codePoint, std::size_t length)
{
  const bool overlong = (length == 3 && codePoint < 0x800) || (length == 4 && codePoint < 0x10000);
  const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  return !overlong && !surrogate && codePoint <= 0x10FFFF;
}
} // namespace

Utf8Character firstCharacter(std::string_view text)
{
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = lengthByLeadByte(lead);
  if (length <= 1)
    return {lead, length};
  if (text.size() < length)
    return {};
  char32_t codePoint = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i)
  {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0U) != 0x80)
      return {};
    codePoint = (codePoint << 6U) | (byte & 0x3FU);
  }
  return isWellFormed(codePoint, length) ? Utf8Character{codePoint, length} : Utf8Character{};
}
} // namespace host
