// Decodes typed bytes into characters.
#pragma once

#include <functional>
#include <optional>

namespace cli
{

/// Decodes by the character set of the locale, a character at a time.
class CharacterDecoder
{
public:
  /// The next byte as a number from 0 to 255, or a negative number when there is none.
  using NextByte = std::function<int()>;

  /// The next character, or what `nextByte` answered when that was negative. Bytes that make no character become
  /// one U+FFFD, so that it is seen; the byte behind them is not lost, and is where the next character begins.
  int next(const NextByte& nextByte);

private:
  std::optional<int> kept;
};

} // namespace cli
