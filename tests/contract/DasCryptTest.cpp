// The encryption of stored values.
#include <DasCrypt.h>

#include <gtest/gtest.h>

#include <string>

#include "PlatformUnderTest.h"

namespace
{
std::string everyByte()
{
  std::string bytes;
  for (int i = 0; i < 256; ++i)
    bytes += static_cast<char>(i);
  return bytes;
}

class DasCryptContract : public testing::Test
{
protected:
  void SetUp() override
  {
    contract::prepareEncryption();
  }
};
} // namespace

TEST_F(DasCryptContract, GivesBackWhatWasEncrypted)
{
  for (const std::string& plain :
       {std::string(), std::string("secret"), std::string("\xC3\xA4 <&>"), everyByte(), std::string(100000, 'x')})
  {
    std::string text;
    std::string back = "left over";
    ASSERT_TRUE(DasCrypt::toEncryptedText(plain, text));
    EXPECT_TRUE(DasCrypt::fromEncryptedText(text, back));
    EXPECT_EQ(back, plain);
  }
}

TEST_F(DasCryptContract, TextStandsInAnElementAsItIs)
{
  std::string text;
  ASSERT_TRUE(DasCrypt::toEncryptedText(everyByte(), text));
  EXPECT_NE(text, "");
  EXPECT_EQ(text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/="),
            std::string::npos);
}

TEST_F(DasCryptContract, TextDoesNotShowThePlainValue)
{
  std::string text;
  ASSERT_TRUE(DasCrypt::toEncryptedText("hunter2hunter2", text));
  EXPECT_EQ(text.find("hunter2"), std::string::npos);
}

TEST_F(DasCryptContract, TextThatIsNoBase64Fails)
{
  std::string out = "as it was";
  EXPECT_FALSE(DasCrypt::fromEncryptedText("*** no such text ***", out));
}
