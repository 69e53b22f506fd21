// The texts of requests, and cutting a value out of a reply.
#include "DASRequests.h"
#include "ManagerTest.h"
#include "createXmlElement.h"

namespace
{

using unit::ItemLine;
using unit::ManagerTest;

TEST(CreateXmlElement, WrapsTheValueInItsTags)
{
  EXPECT_EQ(createXmlElement("ReasonForMessage", "update_request"),
            "<ReasonForMessage>update_request</ReasonForMessage>");
}

TEST(CreateXmlElement, LeavesNothingBetweenTheTagsOfAnEmptyValue)
{
  EXPECT_EQ(createXmlElement("a", ""), "<a></a>");
}

TEST(CreateXmlElement, EscapesNothing)
{
  EXPECT_EQ(createXmlElement("a&b", "<&>"), "<a&b><&></a&b>");
}

ManagedDataItem item(const std::string& indexName)
{
  ManagedDataItem made;
  made.dasSchema = "S";
  made.dasItem = "C";
  made.dasIndexName = indexName;
  made.dasIndexValue = "2";
  return made;
}

TEST(Requests, ReadAWholeSchema)
{
  EXPECT_EQ(sdm::readSchemaRequest("S"), R"(<?xml version="1.0" encoding="utf-8"?><Schema name="S">)"
                                         "<ReasonForMessage>read_request</ReasonForMessage></Schema>");
}

TEST(Requests, ReadAColumnWithoutChoosingARow)
{
  EXPECT_EQ(sdm::readColumnRequest(item("Idx")),
            R"(<?xml version="1.0" encoding="utf-8"?><Schema name="S">)"
            "<ReasonForMessage>read_request</ReasonForMessage><ResultCols>C</ResultCols></Schema>");
}

TEST(Requests, ReadACellOfARow)
{
  EXPECT_EQ(sdm::readCellRequest(item("Idx")),
            R"(<?xml version="1.0" encoding="utf-8"?><Schema name="S">)"
            "<ReasonForMessage>read_request</ReasonForMessage><ResultCols>C</ResultCols>"
            "<Entry><Idx>2</Idx></Entry></Schema>");
}

TEST(Requests, ReadACellWithoutARowLeavesTheEntryOut)
{
  EXPECT_EQ(sdm::readCellRequest(item("")), sdm::readColumnRequest(item("")));
}

TEST(Requests, UpdateOneCellOfARow)
{
  EXPECT_EQ(sdm::updateCellRequest(item("Idx"), "<raw&>"), R"(<?xml version="1.0" encoding="utf-8"?><Schema name="S">)"
                                                           "<ReasonForMessage>update_request</ReasonForMessage>"
                                                           "<Entry><Idx>2</Idx><C><raw&></C></Entry></Schema>");
}

TEST(Requests, ACellWithoutARowStandsBareUnderItsSchema)
{
  std::string request;
  sdm::addUpdateCell(request, item(""), "x");
  EXPECT_EQ(request, "<C>x</C>");
  sdm::addUpdateCell(request, item("Idx"), "y");
  EXPECT_EQ(request, "<C>x</C><Entry><Idx>2</Idx><C>y</C></Entry>");
}

TEST(Requests, OfSeveralCellsAreWholeOnceTheyAreEnded)
{
  std::string request = sdm::beginUpdateRequest("S");
  sdm::addUpdateCell(request, item("Idx"), "<raw&>");
  sdm::endUpdateRequest(request);
  EXPECT_EQ(request, sdm::updateCellRequest(item("Idx"), "<raw&>"));
}

class StripXml : public ManagerTest
{
protected:
  std::string strip(std::string text, const std::string& tag)
  {
    access.stripXml(text, tag);
    return text;
  }
};

TEST_F(StripXml, CutsOutTheTextOfTheElement)
{
  EXPECT_EQ(strip("<a><X>12</X></a>", "X"), "12");
}

TEST_F(StripXml, FindsNothingWithoutTheTag)
{
  EXPECT_EQ(strip("<a>12</a>", "Z"), "");
}

TEST_F(StripXml, TakesAnEarlierOccurrenceInAnAttribute)
{
  EXPECT_EQ(strip(R"(<Schema name="Port"><K>v</K><Port>80</Port>)", "Port"), ">");
  EXPECT_EQ(strip("<Port80>x</Port80><Port>80</Port>", "Port"), "0>x");
}

TEST_F(StripXml, KeepsTheRestWhenNoElementFollows)
{
  EXPECT_EQ(strip("<X>12", "X"), "12");
}

TEST_F(StripXml, TakesTheEmptyTextRightBehindTheSkippedCharacter)
{
  EXPECT_EQ(strip("<X>", "X"), "");
}

TEST_F(StripXml, DecodesNoEntities)
{
  EXPECT_EQ(strip("<X>a&amp;b</X>", "X"), "a&amp;b");
}

TEST_F(StripXml, RaisesOutOfRangeWhenTheTextEndsWithTheTag)
{
  std::string text = "<a>X";
  EXPECT_THROW(access.stripXml(text, "X"), std::out_of_range);
}

} // namespace
