// The plain form of a request is read by other code than all other forms: both have to understand the same.
#include "DasFixture.h"

namespace
{
using hosttest::readRequest;
using hosttest::request;
using hosttest::send;
using hosttest::updateRequest;

struct Asked
{
  const char* title;
  std::string text;
};

void PrintTo(const Asked& asked, std::ostream* stream)
{
  *stream << asked.title;
}

class DasPlain : public testing::TestWithParam<Asked>
{
protected:
  /// What a database that holds a little answers, and what it holds then.
  static std::string outcomeOf(const std::string& text)
  {
    host::DataAccessService database(":memory:");
    database.provision({{"Plain", "", {"A", "B", "\xC3\xA4"}, {}},
                        {"Rows", "Idx", {"A", "B", "C", "D", "E", "F", "G", "H", "I"}, {"1", "2"}},
                        {"a\"b", "", {"A"}, {}},
                        {"a b", "", {"A"}, {}}});
    send(database, updateRequest("Plain", "<A>a</A><B>b</B>"));
    send(database, updateRequest("Rows", "<Entry><Idx>1</Idx><A>a</A></Entry>"));
    std::string outcome = send(database, text);
    for (const char* schema : {"Plain", "Rows", "a&quot;b", "a b"})
      outcome += "\n" + send(database, readRequest(schema));
    return outcome;
  }

  /// The same request, with a comment at its end: only the parser takes it.
  static std::string forTheParser(const std::string& text)
  {
    return text + "<!-- -->";
  }
};

std::string entry(const std::string& cells)
{
  return "<Entry>" + cells + "</Entry>";
}

std::string withoutDeclaration(const std::string& text)
{
  return text.substr(text.find("?>") + 2);
}

const Asked requests[] = {
    {"WholeSchema", readRequest("Plain")},
    {"WholeIndexedSchema", readRequest("Rows")},
    {"NoDeclaration", withoutDeclaration(readRequest("Plain"))},
    {"OtherDeclaration", "<?xml version='1.0'?>" + withoutDeclaration(readRequest("Plain"))},
    {"Column", readRequest("Plain", "<ResultCols>B</ResultCols>")},
    {"ColumnByReference", readRequest("Plain", "<ResultCols>&lt;</ResultCols>")},
    {"ColumnByNumber", readRequest("Plain", "<ResultCols>&#65;</ResultCols>")},
    {"ColumnOutsideAscii", readRequest("Plain", "<ResultCols>\xC3\xA4</ResultCols>")},
    {"Cell", readRequest("Rows", "<ResultCols>A</ResultCols>" + entry("<Idx>1</Idx>"))},
    {"CellAndMore", readRequest("Rows", "<ResultCols>A</ResultCols>" + entry("<Idx>1</Idx>") + "<A>1</A>")},
    {"CellOfTwo", readRequest("Rows", "<ResultCols>A</ResultCols>" + entry("<Idx>1</Idx><A>2</A>"))},
    {"EntryAlone", readRequest("Rows", entry("<Idx>1</Idx>"))},
    {"Cells", updateRequest("Plain", "<A>1</A><B>2</B><A>3</A>")},
    {"CellOutsideAscii", updateRequest("Plain", "<\xC3\xA4>1</\xC3\xA4>")},
    {"EmptyCell", updateRequest("Plain", "<A></A>")},
    {"ShortEmptyCell", updateRequest("Plain", "<A/>")},
    {"NoCell", updateRequest("Plain", "")},
    {"Entries", updateRequest("Rows", entry("<Idx>2</Idx><B>x</B>") + entry("<Idx>9</Idx><A>x</A>"))},
    {"EmptyEntry", updateRequest("Rows", entry(""))},
    {"EntryOfAnIndex", updateRequest("Rows", entry("<Idx>1</Idx>"))},
    {"EntryWithAColumnTwice", updateRequest("Rows", entry("<Idx>1</Idx><A>1</A><A>2</A>"))},
    {"EntryOfTenCells", updateRequest("Rows", entry("<Idx>1</Idx><A>1</A><B>1</B><C>1</C><D>1</D><E>1</E><F>1</F>"
                                                    "<G>1</G><H>1</H><I>1</I>"))},
    {"EntryOfTenCellsOneTwice", updateRequest("Rows", entry("<Idx>1</Idx><A>1</A><B>1</B><C>1</C><D>1</D><E>1</E>"
                                                            "<F>1</F><G>1</G><H>1</H><A>1</A>"))},
    {"CellsAndEntries", updateRequest("Rows", "<A>1</A>" + entry("<Idx>1</Idx><A>1</A>"))},
    {"NamedReferences", updateRequest("Plain", "<A>&amp;&lt;&gt;&quot;&apos;&amp;amp;</A>")},
    {"NumberedReference", updateRequest("Plain", "<A>&#13;&#x41;</A>")},
    {"UnknownReference", updateRequest("Plain", "<A>&foo;</A>")},
    {"OpenReference", updateRequest("Plain", "<A>&amp</A>")},
    {"LineEnds", updateRequest("Plain", "<A>a\r\nb\rc\nd\te</A>")},
    {"EndOfASection", updateRequest("Plain", "<A>a]]>b</A>")},
    {"GreaterThan", updateRequest("Plain", "<A>a>b</A>")},
    {"Section", updateRequest("Plain", "<A><![CDATA[<x>]]></A>")},
    {"Utf8", updateRequest("Plain", "<A>\xC3\xA4\xF0\x9F\x98\x80</A>")},
    {"BrokenUtf8", updateRequest("Plain", "<A>\xC3</A>")},
    {"Surrogate", updateRequest("Plain", "<A>\xED\xA0\x80</A>")},
    {"ControlCharacter", updateRequest("Plain", "<A>\x01</A>")},
    {"Zero", updateRequest("Plain", std::string("<A>a\0b</A>", 10))},
    {"NameOfAMessage", updateRequest("Plain", "<Context>1</Context>")},
    {"NameWithAColon", updateRequest("Plain", "<A:B>1</A:B>")},
    {"NameOfADigit", updateRequest("Plain", "<1>1</1>")},
    {"EmptyName", updateRequest("Plain", "<>1</>")},
    {"OtherEnd", updateRequest("Plain", "<A>1</B>")},
    {"LongerEnd", updateRequest("Plain", "<A>1</AB>")},
    {"BlankInAnEnd", updateRequest("Plain", "<A>1</A >")},
    {"Attribute", updateRequest("Plain", "<A b=\"c\">1</A>")},
    {"SchemaByReference", updateRequest("a&quot;b", "<A>1</A>")},
    {"SchemaWithATab", updateRequest("a\tb", "<A>1</A>")},
    {"SchemaOutsideXml", updateRequest("a\x01", "<A>1</A>")},
    {"OtherReason", request("Plain", "readx_request", "")},
    {"Blanks", updateRequest("Plain", " <A>1</A>\n")},
};
} // namespace

TEST_P(DasPlain, MeansTheSameToThePlainReaderAndToTheParser)
{
  const std::string text = GetParam().text;
  EXPECT_EQ(outcomeOf(text), outcomeOf(forTheParser(text)));
}

namespace
{
std::string titleOf(const testing::TestParamInfo<Asked>& info)
{
  return info.param.title;
}
} // namespace

INSTANTIATE_TEST_SUITE_P(Requests, DasPlain, testing::ValuesIn(requests), titleOf);
