// The device's text helpers, read back by an XML parser.
#include <ClientUtils.h>

#include <expat.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace
{
void appendText(void* text, const char* piece, int length)
{
  static_cast<std::string*>(text)->append(piece, static_cast<std::size_t>(length));
}

/// What a parser makes of the text as the content of an element.
std::string readBack(const std::string& content)
{
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate(nullptr), &XML_ParserFree);
  std::string text;
  XML_SetUserData(parser.get(), &text);
  XML_SetCharacterDataHandler(parser.get(), &appendText);
  const std::string document = "<a>" + content + "</a>";
  const auto status = XML_Parse(parser.get(), document.data(), static_cast<int>(document.size()), XML_TRUE);
  EXPECT_EQ(status, XML_STATUS_OK) << XML_ErrorString(XML_GetErrorCode(parser.get()));
  return text;
}
} // namespace

TEST(ClientUtilsContract, EscapedTextIsReadBackUnchanged)
{
  for (const std::string text :
       {"", "plain", "&", "<", ">", "\"", "'", "&amp;", "&#65;", "a<b>&\"c\"'d'", "]]>", "<![CDATA[x]]>", "\r", "\r\n",
        "a\rb\nc\td", " blanks ", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", "\x7F"})
    EXPECT_EQ(readBack(ClientUtils::escapeXMLString(text)), text);
}

TEST(ClientUtilsContract, EscapedLongTextIsReadBackUnchanged)
{
  std::string text;
  for (int i = 0; i < 20000; ++i)
    text += "<&\r>";
  EXPECT_EQ(readBack(ClientUtils::escapeXMLString(text)), text);
}

TEST(ClientUtilsContract, HiddenValueIsTheValueItselfOrDoesNotShowIt)
{
  const std::string value = "Zq7-Zq7";
  for (const char* rootId : {"display.brightness", "AdminPassword", ""})
  {
    const std::string shown = ClientUtils::hidePassword(rootId, value);
    EXPECT_TRUE(shown == value || shown.find(value) == std::string::npos) << rootId;
  }
}
