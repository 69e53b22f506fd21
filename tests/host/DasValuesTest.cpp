// Values come back as they went in, or not at all.
#include <ClientUtils.h>

#include "DasFixture.h"

namespace
{
using hosttest::holds;
using hosttest::readReply;
using hosttest::updateReply;
class DasValues : public hosttest::DasFixture
{
};
} // namespace

TEST_F(DasValues, EscapedValueIsStoredAsItWas)
{
  for (const std::string value :
       {"&<>\"'", "a\rb\r\nc\nd\te", " blanks ", "]]>", "'; DROP TABLE Plain; --", "%s%n", "\xC3\xA4\xE2\x82\xAC",
        "\xF0\x9F\x98\x80", "\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD", "0012", "1e5", "NULL", "&amp;", "\x7F"})
  {
    EXPECT_EQ(update("Plain", "<A>" + ClientUtils::escapeXMLString(value) + "</A>"), updateReply("Plain"));
    EXPECT_EQ(das.storedCell("Plain", "A", "", ""), value);
    EXPECT_EQ(read("Plain"), readReply("Plain", "<A>" + ClientUtils::escapeXMLString(value) + "</A>"));
  }
}

TEST_F(DasValues, CarriageReturnSurvivesInReplies)
{
  update("Plain", "<A>a&#13;b</A>");
  EXPECT_EQ(read("Plain"), readReply("Plain", "<A>a&#13;b</A>"));
}

TEST_F(DasValues, MarkupIsEscapedInReplies)
{
  update("Plain", "<A>&lt;b&gt; &amp; &quot;c&quot; &apos;d&apos;<![CDATA[<e>]]></A>");
  EXPECT_EQ(read("Plain"), readReply("Plain", "<A>&lt;b&gt; &amp; &quot;c&quot; &apos;d&apos;&lt;e&gt;</A>"));
}

TEST_F(DasValues, LongValueIsKeptWhole)
{
  const std::string value(2 * 1000 * 1000, 'x');
  update("Plain", "<A>" + value + "</A>");
  EXPECT_EQ(das.storedCell("Plain", "A", "", ""), value);
}

TEST_F(DasValues, WhatXmlCannotCarryIsRefusedInUpdates)
{
  update("Plain", "<A>old</A>");
  for (const std::string& value :
       {std::string("\x01"), std::string("\x0B"), std::string("\x1F"), std::string("a\0b", 3), std::string("&#1;"),
        std::string("&#0;"), std::string("&#xFFFE;"), std::string("&#xFFFF;"), std::string("&#xD800;"),
        std::string("\xEF\xBF\xBE"), std::string("\xEF\xBF\xBF"), std::string("\xED\xA0\x80"), std::string("\xC0\x80"),
        std::string("\xFF"), std::string("\xE2\x82"), std::string("\xF4\x90\x80\x80"), std::string("&#x110000;")})
  {
    EXPECT_TRUE(holds(update("Plain", "<A>" + value + "</A>"), "error_response")) << value;
    EXPECT_EQ(das.storedCell("Plain", "A", "", ""), "old") << value;
  }
}

TEST_F(DasValues, WhatXmlCannotCarryIsRefusedInReplies)
{
  update("Plain", "<A>x</A><B>fine</B>");
  for (const char* planted :
       {"char(1)", "'a' || char(0) || 'b'", "CAST(x'C080' AS TEXT)", "CAST(x'FF' AS TEXT)", "CAST(x'EFBFBE' AS TEXT)",
        "CAST(x'EDA080' AS TEXT)", "CAST(x'E282' AS TEXT)", "CAST(x'F4908080' AS TEXT)", "CAST(x'F0808080' AS TEXT)",
        "CAST(x'E08181' AS TEXT)", "CAST(x'F0808181' AS TEXT)"})
  {
    hosttest::runSql(file, std::string("UPDATE Plain SET A = ") + planted);
    EXPECT_EQ(read("Plain"), hosttest::errorReply("Plain", "the database holds a value that XML cannot carry"))
        << planted;
    EXPECT_EQ(read("Plain", "<ResultCols>B</ResultCols>"), readReply("Plain", "<B>fine</B>"));
  }
}
