// Answering read requests.
#include "ManagerTest.h"

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;
using unit::readReply;

class GetPath : public ManagerTest
{
protected:
  std::vector<std::string> get(const std::vector<std::string>& rootIds)
  {
    access.dataAccessIfc();
    data = std::make_unique<ManageableData>();
    for (const std::string& rootId : rootIds)
      data->addRootId(rootId, nullptr);
    return traced([&] { answered = manager.getData(*data); });
  }

  std::string cellRequest(const std::string& entry) const
  {
    return R"(<?xml version="1.0" encoding="utf-8"?><Schema name="S"><ReasonForMessage>read_request)"
           "</ReasonForMessage><ResultCols>C</ResultCols>" +
           entry + "</Schema>";
  }

  std::unique_ptr<ManageableData> data;
  bool answered = false;
};

TEST_F(GetPath, AsksTheGetterWithTheItemsIndex)
{
  load({ItemLine("i").das("S", "C").index("I", "2").both("i")});
  getter("i").value = "live";
  EXPECT_THAT(get({"i"}), ElementsAre(R"(get i("2"))"));
  EXPECT_TRUE(answered);
  EXPECT_EQ(recording::describe(*data), "i=live");
}

TEST_F(GetPath, TracesAGettersAnswerMasked)
{
  load({ItemLine("i").das("S", "C").get("i"), ItemLine("pin").das("S", "D").get("pin")});
  getter("i").value = "live";
  getter("pin").value = "1234";
  recording::behaviour().secret = "pin";
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(get({"i", "pin"}), ElementsAre(R"(get i(""))", "log 5 getData(phone) \"i\" = \"live\"", R"(get pin(""))",
                                             "log 5 getData(phone) \"pin\" = \"***\""));
  EXPECT_EQ(recording::describe(*data), "i=live,pin=1234");
}

TEST_F(GetPath, MasksNothingWhileTheGateIsClosed)
{
  load({ItemLine("i").das("S", "C").get("i")});
  recording::behaviour().openLevel = 4;
  EXPECT_THAT(get({"i"}), ElementsAre(R"(get i(""))"));
  EXPECT_EQ(recording::behaviour().hidePasswordCalls, 0);
}

TEST_F(GetPath, ReadsACellFromTheDatabaseWithoutAGetter)
{
  load({ItemLine("i").das("S", "C").set("i")});
  das.replies = {readReply("S", "<C>v</C>")};
  EXPECT_THAT(get({"i"}), ElementsAre("sendRequest(" + cellRequest("") + ")"));
  EXPECT_TRUE(answered);
  EXPECT_EQ(recording::describe(*data), "i=v");
}

TEST_F(GetPath, ChoosesTheRowOfAnIndexedItem)
{
  load({ItemLine("i").das("S", "C").index("I", "2").set("i")});
  das.replies = {readReply("S", "<Entry><I>2</I><C>v</C></Entry>")};
  EXPECT_THAT(get({"i"}), ElementsAre("sendRequest(" + cellRequest("<Entry><I>2</I></Entry>") + ")"));
  EXPECT_EQ(recording::describe(*data), "i=v");
}

TEST_F(GetPath, TracesTheRequestButNeverTheValueOfADatabaseRead)
{
  load({ItemLine("i").das("S", "C").encrypted()});
  das.replies = {readReply("S", "<C>" + recording::encrypted("pass") + "</C>")};
  recording::behaviour().openLevel = 5;
  const auto lines = get({"i"});
  EXPECT_EQ(recording::describe(*data), "i=pass");
  EXPECT_EQ(lines[0], "log 5 getData(phone) sending request to DataAccessService \"" + cellRequest("") + "\"");
  EXPECT_EQ(lines[1], "sendRequest(" + cellRequest("") + ")");
  EXPECT_EQ(lines[2].compare(0, 23, "log 5 parseXMLDasReply "), 0) << lines[2];
  EXPECT_EQ(lines[3].compare(0, 18, "fromEncryptedText("), 0) << lines[3];
  EXPECT_EQ(lines.size(), 4U);
}

TEST_F(GetPath, AnswersTheLastTextOfAGoodReplyWhateverItsColumn)
{
  load({ItemLine("i").das("S", "C").standard("default")});
  das.replies = {readReply("T", "<A>first</A><B>last</B>")};
  get({"i"});
  EXPECT_EQ(recording::describe(*data), "i=last");
}

TEST_F(GetPath, AnswersTheKindOfAnUpdateReply)
{
  load({ItemLine("i").das("S", "C").standard("default")});
  das.replies = {unit::updateReply()};
  get({"i"});
  EXPECT_EQ(recording::describe(*data), "i=update_response");
}

TEST_F(GetPath, AnswersTheDefaultWhenTheReplyLacksTheCell)
{
  load({ItemLine("i").das("S", "C").standard("default").encrypted()});
  das.replies = {readReply("S", "")};
  recording::behaviour().openLevel = 3;
  EXPECT_THAT(get({"i"}), ElementsAre("sendRequest(" + cellRequest("") + ")",
                                      "log 3 getData bad XML reply from DataAccessService or data not found \"" +
                                          readReply("S", "") + "\""));
  EXPECT_TRUE(answered);
  EXPECT_EQ(recording::describe(*data), "i=default");
}

TEST_F(GetPath, AnswersTheDefaultWhenTheReplyIsMalformed)
{
  load({ItemLine("i").das("S", "C").standard("default")});
  das.replies = {"<oops"};
  recording::behaviour().openLevel = 2;
  EXPECT_THAT(get({"i"}),
              ElementsAre("sendRequest(" + cellRequest("") + ")", "log 2 parser error [unclosed token] at [1]\n"));
  EXPECT_EQ(recording::describe(*data), "i=default");
}

TEST_F(GetPath, AnswersWhatAFailedDecryptionLeaves)
{
  load({ItemLine("i").das("S", "C").encrypted()});
  das.replies = {readReply("S", "<C>plain</C>")};
  EXPECT_EQ(get({"i"}).back(), "log 2 decryptData failed to base64decode data item");
  EXPECT_EQ(recording::describe(*data), "i=plain");
}

TEST_F(GetPath, SkipsAnItemWithNeitherGetterNorColumn)
{
  load({ItemLine("i").das("S", "")});
  recording::behaviour().openLevel = 6;
  EXPECT_THAT(get({"i"}), IsEmpty());
  EXPECT_FALSE(answered);
  EXPECT_EQ(recording::describe(*data), "i");
}

TEST_F(GetPath, AnswersTheItemsBehindOneWithNeitherGetterNorColumn)
{
  load({ItemLine("i").das("S", ""), ItemLine("j").das("S", "C").get("j")});
  EXPECT_THAT(get({"i", "j"}), ElementsAre(R"(get j(""))"));
  EXPECT_TRUE(answered);
}

TEST_F(GetPath, ReportsUnknownItemsAndAnswersTheOthers)
{
  load({ItemLine("i").das("S", "C").get("i"), ItemLine("local").get("local")});
  EXPECT_THAT(get({"nobody", "local", "i"}),
              ElementsAre("log 2 getData(phone) unknown item \"nobody\"", "log 2 getData(phone) unknown item \"local\"",
                          R"(get i(""))"));
  EXPECT_TRUE(answered);
  EXPECT_EQ(recording::describe(*data), "nobody,local,i=");
}

TEST_F(GetPath, FailsWhenNothingIsPublished)
{
  EXPECT_THAT(get({"a", "b"}),
              ElementsAre("log 2 getData(phone) unknown item \"a\"", "log 2 getData(phone) unknown item \"b\""));
  EXPECT_FALSE(answered);
}

TEST_F(GetPath, FailsWithoutRootIds)
{
  EXPECT_THAT(get({}), IsEmpty());
  EXPECT_FALSE(answered);
}

TEST_F(GetPath, AnswersNotEvenGettersWithoutADatabase)
{
  withdraw("DataAccessServiceIfc");
  load({ItemLine("i").das("S", "C").get("i")});
  data = request({{"i", ""}});
  EXPECT_THAT(
      traced([&] { EXPECT_FALSE(manager.getData(*data)); }),
      ElementsAre(R"(findService("DataAccessServiceIfc"))", "log 2 getData(phone) Can't find DataAccessService"));
}

TEST_F(GetPath, HoldsTheLockForTheWholeCall)
{
  load({ItemLine("i").das("S", "C").get("i"), ItemLine("j").das("S", "D")});
  std::vector<int> depths;
  getter("i").hook = [&] { depths.push_back(recording::behaviour().lockDepth); };
  das.hook = getter("i").hook;
  get({"i", "j"});
  EXPECT_THAT(depths, ElementsAre(1, 1));
  EXPECT_EQ(recording::behaviour().lockDepth, 0);
}

} // namespace
