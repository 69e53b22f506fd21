// The Data Access Service as the manager talks to it.
#include <gtest/gtest.h>

#include <string>

#include "ServicesUnderTest.h"

namespace
{
class DataAccessContract : public testing::Test
{
protected:
  std::string send(const std::string& schema, const std::string& reason, const std::string& rest)
  {
    const std::string request = "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"" + schema +
                                "\"><ReasonForMessage>" + reason + "</ReasonForMessage>" + rest + "</Schema>";
    return services->das().sendRequest(request.c_str(), request.size());
  }

  std::unique_ptr<contract::Services> services = contract::makeServices();
};

bool holds(const std::string& text, const std::string& part)
{
  return text.find(part) != std::string::npos;
}
} // namespace

TEST_F(DataAccessContract, CarriedOutUpdateSaysSo)
{
  EXPECT_TRUE(
      holds(send("Plain", "update_request", "<A>1</A>"), "<ReasonForMessage>update_response</ReasonForMessage>"));
}

TEST_F(DataAccessContract, ReadsBackAnUnindexedCell)
{
  send("Plain", "update_request", "<A>1 &amp; 2</A>");
  const std::string reply = send("Plain", "read_request", "<ResultCols>A</ResultCols>");
  EXPECT_TRUE(holds(reply, "<ReasonForMessage>read_response</ReasonForMessage>"));
  EXPECT_TRUE(holds(reply, "<A>1 &amp; 2</A>"));
}

TEST_F(DataAccessContract, IndexColumnComesBeforeTheOthersOfItsRow)
{
  send("Rows", "update_request", "<Entry><Idx>7</Idx><A>x</A><B>y</B></Entry>");
  const std::string reply = send("Rows", "read_request", "");
  ASSERT_TRUE(holds(reply, "<Idx>7</Idx>"));
  EXPECT_LT(reply.find("<Idx>"), reply.find("<A>x</A>"));
  EXPECT_LT(reply.find("<Idx>"), reply.find("<B>y</B>"));
}

TEST_F(DataAccessContract, CellReadPicksItsRow)
{
  send("Rows", "update_request", "<Entry><Idx>1</Idx><A>x</A></Entry><Entry><Idx>2</Idx><A>y</A></Entry>");
  const std::string reply = send("Rows", "read_request", "<ResultCols>A</ResultCols><Entry><Idx>2</Idx></Entry>");
  EXPECT_TRUE(holds(reply, "<A>y</A>"));
  EXPECT_FALSE(holds(reply, "<A>x</A>"));
}

TEST_F(DataAccessContract, NoWhiteSpaceStandsBetweenElements)
{
  send("Rows", "update_request", "<Entry><Idx>1</Idx><A>x</A></Entry>");
  const std::string reply = send("Rows", "read_request", "");
  EXPECT_TRUE(holds(reply, "</A></Entry></Schema>"));
}

TEST_F(DataAccessContract, UnknownSchemaFails)
{
  const std::string reply = send("Nowhere", "read_request", "");
  EXPECT_FALSE(holds(reply, "read_response"));
  EXPECT_FALSE(holds(reply, "update_response"));
}
