// What becomes of typed bytes.
#include "prompt/CharacterDecoder.h"

#include <gtest/gtest.h>

#include <string>

#include "base/Shown.h"

using namespace cli;

namespace
{

/// All characters of a text, up to its end.
std::u32string decoded(const std::string& bytes)
{
  useUtf8();
  CharacterDecoder decoder;
  std::size_t place = 0;
  const auto nextByte = [&] { return place < bytes.size() ? static_cast<unsigned char>(bytes[place++]) : -1; };
  std::u32string characters;
  for (int each = decoder.next(nextByte); each >= 0; each = decoder.next(nextByte))
    characters += static_cast<char32_t>(each);
  return characters;
}

} // namespace

TEST(CharacterDecoder, PutsBytesTogether)
{
  EXPECT_EQ(decoded("Z\xc3\xbcrich \xe2\x82\xac \xf0\x9f\x93\x9e"), U"Zürich € 📞");
}

TEST(CharacterDecoder, KeepsTheByteBehindACharacterThatBreaksOff)
{
  EXPECT_EQ(decoded("Zo\xeb\n"), U"Zo\ufffd\n");
  EXPECT_EQ(decoded("a\xe2\x82z"), U"a\ufffdz");
  EXPECT_EQ(decoded("\xe2\xc3\xbc"), U"\ufffdü");
}

TEST(CharacterDecoder, ShowsAByteThatBeginsNothing)
{
  EXPECT_EQ(decoded("Zo\xff\x65"), U"Zo\ufffde");
  EXPECT_EQ(decoded("\x80\xff"), U"\ufffd\ufffd");
}

TEST(CharacterDecoder, PassesANulOn)
{
  EXPECT_EQ(decoded(std::string("a\0b", 3)), std::u32string(U"a\0b", 3));
}
