// Values of more than 1 MiB on every road a value takes through the library.
#include <algorithm>

#include "ManagerTest.h"

namespace
{

using unit::ElementsAre;
using unit::ItemLine;
using unit::ManagerTest;
using unit::readReply;
using unit::updateReply;

class LargeValuesTest : public ManagerTest
{
protected:
  LargeValuesTest()
  {
    load({ItemLine("item").das("S", "C").both("item"), ItemLine("secret").das("S", "X").both("secret").encrypted()});
    manager.setStartup(false);
  }

  /// 2 MiB and some, of lines that tell where they belong.
  static std::string largeValue()
  {
    std::string value;
    for (int line = 0; value.size() < 2U * 1024 * 1024; ++line)
      value += "line " + std::to_string(line) + "\n";
    return value;
  }

  const std::string large = largeValue();
};

TEST_F(LargeValuesTest, AValueOfTwoMebibytesIsWrittenWhole)
{
  const auto data = request({{"item", large}});
  EXPECT_TRUE(manager.setData(*data));
  EXPECT_TRUE(data->isRejectListEmpty());
  const std::vector<std::string> requests = recording::traceOf("sendRequest");
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_NE(requests.front().find("<C>" + large + "</C>"), std::string::npos);
}

TEST_F(LargeValuesTest, AValueOfTwoMebibytesIsWrittenWholeWhenItIsEncrypted)
{
  EXPECT_TRUE(manager.setData(*request({{"secret", large}})));
  const std::vector<std::string> requests = recording::traceOf("sendRequest");
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_NE(requests.front().find("<X>" + recording::encrypted(large) + "</X>"), std::string::npos);
}

TEST_F(LargeValuesTest, AValueOfTwoMebibytesIsCollectedWhole)
{
  std::string values;
  EXPECT_TRUE(access.parseXMLDasReply(readReply("S", "<C>" + large + "</C><X>" + large + "</X>"), false, &values));
  EXPECT_TRUE(values == large + "," + large);
}

TEST_F(LargeValuesTest, AValueOfTwoMebibytesIsImportedWhole)
{
  const std::string text = readReply("S", "<C>" + large + "</C><X>" + recording::encrypted(large) + "</X>");
  const auto calls = traced([&] { EXPECT_TRUE(access.parseXMLDasReply(text, true, nullptr)); });
  EXPECT_EQ(std::count_if(calls.begin(), calls.end(),
                          [&](const std::string& call) { return call.find(large) != std::string::npos; }),
            2);
}

TEST_F(LargeValuesTest, AValueOfTwoMebibytesIsReadWhole)
{
  load({ItemLine("stored").das("T", "C")});
  das.replies = {readReply("T", "<C>" + large + "</C>")};
  const auto data = request({{"stored", ""}});
  manager.getData(*data);
  std::string value;
  data->interogate("stored", "stored", value);
  EXPECT_TRUE(value == large);
}

TEST_F(LargeValuesTest, AValueOfTwoMebibytesIsLoggedWholeWithItsRequest)
{
  recording::behaviour().openLevel = 5;
  manager.setData(*request({{"item", large}}));
  const std::vector<std::string> lines = recording::traceOf("log 5 sendDASRequests sending request ");
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_NE(lines.front().find(large), std::string::npos);
}

} // namespace
