// Collects the bytes of a character; what is none is handed on byte by byte.
#include "CharacterDecoder.h"

#include <cwchar>
#include <utility>

namespace cli
{
namespace
{

constexpr int replacement = 0xfffd;

} // namespace

int CharacterDecoder::next(const NextByte& nextByte)
{
  std::mbstate_t state{};
  for (bool first = true;; first = false)
  {
    const std::optional<int> before = std::exchange(kept, std::nullopt);
    const int number = before ? *before : nextByte();
    if (number < 0)
      return number;
    const char byte = static_cast<char>(number);
    wchar_t code = 0;
    const std::size_t used = std::mbrtowc(&code, &byte, 1, &state);
    if (used <= 1)
      return static_cast<int>(code);
    if (used != static_cast<std::size_t>(-1))
      continue;
    if (!first)
      kept = number;
    return replacement;
  }
}

} // namespace cli
