// Requests and replies as the operator reads them.
#include "map/TrafficText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <unistd.h>

using namespace cli;

namespace
{

class TrafficTextTest : public testing::Test
{
protected:
  static ItemTable items()
  {
    const auto path = std::filesystem::temp_directory_path() / ("traffic" + std::to_string(::getpid()) + ".csv");
    std::ofstream(path) << "key,S,Hidden,,,,,,,,,true\nopen,S,Open,,,,,,,,,\n";
    ItemTable table(path);
    std::filesystem::remove(path);
    return table;
  }

  Masking masking{items()};
};

} // namespace

TEST_F(TrafficTextTest, PutsEachElementOnALineOfItsOwn)
{
  EXPECT_EQ(indented("<?xml version=\"1.0\"?><Schema name=\"S\"><Entry><Open>a &amp; b</Open></Entry></Schema>",
                     masking, "> "),
            "> <Schema name=\"S\">\n>   <Entry>\n>     <Open>a & b</Open>\n>   </Entry>\n> </Schema>\n");
}

TEST_F(TrafficTextTest, MasksElementsOfSecretItemsAndOfSecretNames)
{
  const std::string text = indented("<S><Hidden>aa1</Hidden><Password>bb2</Password><Open>cc3</Open></S>", masking, "");
  EXPECT_EQ(text.find("aa1"), std::string::npos);
  EXPECT_EQ(text.find("bb2"), std::string::npos);
  EXPECT_NE(text.find("cc3"), std::string::npos);
}

TEST_F(TrafficTextTest, DoesNotShowWhatIsNoXml)
{
  EXPECT_EQ(indented("<Hidden>aa1", masking, ""), "(11 bytes that are no XML)\n");
}

TEST_F(TrafficTextTest, EscapesControlCharacters)
{
  EXPECT_EQ(indented("<Open>a&#10;\x7f</Open>", masking, ""), "<Open>a\\n\\x7f</Open>\n");
}

TEST_F(TrafficTextTest, EscapesWhatCouldSteerATerminalInNamesAsWell)
{
  EXPECT_EQ(indented("<O\xc2\x9b"
                     "m a\xe2\x80\xae=\"b\xc2\x9b\">c</O\xc2\x9b"
                     "m>",
                     masking, ""),
            "<O\\xc2\\x9bm a\\xe2\\x80\\xae=\"b\\xc2\\x9b\">c</O\\xc2\\x9bm>\n");
}

TEST_F(TrafficTextTest, LeavesOutWhatIsNestedTooDeepAndSaysSo)
{
  constexpr std::size_t levels = 200000;
  std::string xml;
  for (std::size_t i = 0; i < levels; ++i)
    xml += "<a>";
  for (std::size_t i = 0; i < levels; ++i)
    xml += "</a>";
  const std::string text = indented(xml, masking, "");
  EXPECT_NE(text.find("(what is nested deeper than 32 levels is left out)\n"), std::string::npos);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 65);
}

TEST_F(TrafficTextTest, ReadsTheKindAndTheReasonOfAReply)
{
  const std::string reply =
      "<Schema name=\"S\"><ReasonForMessage>error_response</ReasonForMessage><Error>no</Error></Schema>";
  EXPECT_EQ(messageKind(reply), "error_response");
  EXPECT_EQ(replyError(reply), "no");
  EXPECT_EQ(messageKind("nonsense"), "");
  EXPECT_EQ(replyError(""), "no reason given");
}

TEST_F(TrafficTextTest, ReadsTheSchemaOfARequest)
{
  EXPECT_EQ(requestedSchema("<Schema name=\"Sip &amp; Co\"><ReasonForMessage/></Schema>"), "Sip & Co");
  EXPECT_EQ(requestedSchema("<Schema"), "");
}
