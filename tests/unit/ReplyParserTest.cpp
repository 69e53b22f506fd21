// Reading replies in both modes.
#include "DASElementHandlers.h"

#include <expat.h>

#include "ManagerTest.h"

namespace
{

bool parsersLeft = true;

} // namespace

/// In the place of the parser's own, so that there may be no memory for one.
extern "C" __attribute__((visibility("default"))) XML_Parser XML_ParserCreate(const XML_Char* encoding)
{
  return parsersLeft ? XML_ParserCreate_MM(encoding, nullptr, nullptr) : nullptr;
}

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using unit::ItemLine;
using unit::ManagerTest;
using unit::readReply;
using unit::replyOf;
using unit::updateReply;

class ReplyParser : public ManagerTest
{
protected:
  bool collect(const std::string& text)
  {
    values = "untouched";
    return access.parseXMLDasReply(text, false, &values);
  }

  std::vector<std::string> import(const std::string& text)
  {
    return traced([&] { imported = access.parseXMLDasReply(text, true, nullptr); });
  }

  std::string values;
  bool imported = false;
};

TEST_F(ReplyParser, AcceptsAnUpdateReplyWithoutColumns)
{
  EXPECT_TRUE(collect(updateReply()));
  EXPECT_EQ(values, "");
}

TEST_F(ReplyParser, CollectsWhatHandlersGetBeforeAnyReply)
{
  const char* noAttributes = nullptr;
  DASStartElementHandler(&manager, "a", &noAttributes);
  DASCharacterDataHandler(&manager, "1", 1);
  DASEndElementHandler(&manager, "a");
  EXPECT_EQ(access.reply.values, "1");
}

TEST_F(ReplyParser, RefusesAReadReplyWithoutColumns)
{
  EXPECT_FALSE(collect(readReply("S", "")));
  EXPECT_EQ(values, "untouched");
}

TEST_F(ReplyParser, CountsStructureAsNoColumn)
{
  EXPECT_FALSE(collect(readReply("S", "<Context></Context><Entry></Entry>")));
}

TEST_F(ReplyParser, AcceptsAReadReplyWithOneEmptyColumn)
{
  EXPECT_TRUE(collect(readReply("S", "<a></a>")));
  EXPECT_EQ(values, "");
}

TEST_F(ReplyParser, JoinsColumnsWithCommas)
{
  EXPECT_TRUE(collect(readReply("S", "<a>1</a><b>2</b><c>3</c>")));
  EXPECT_EQ(values, "1,2,3");
}

TEST_F(ReplyParser, ShowsAnEmptyColumnInTheMiddleButNotAtTheFront)
{
  EXPECT_TRUE(collect(readReply("S", "<a>a</a><b></b><c>c</c>")));
  EXPECT_EQ(values, "a,,c");
  EXPECT_TRUE(collect(readReply("S", "<a></a><b>x</b>")));
  EXPECT_EQ(values, "x");
}

TEST_F(ReplyParser, CollectsIndexColumnsLikeAnyOther)
{
  load({ItemLine("i").das("S", "C").index("Idx", "1").set("i")});
  EXPECT_TRUE(collect(readReply("S", "<Entry><Idx>1</Idx><C>v</C></Entry>")));
  EXPECT_EQ(values, "1,v");
  EXPECT_THAT(recording::traceOf("set"), IsEmpty());
}

TEST_F(ReplyParser, StartsEachCollectionAnew)
{
  EXPECT_TRUE(collect(readReply("S", "<a>1</a>")));
  EXPECT_TRUE(collect(readReply("S", "<a>2</a>")));
  EXPECT_EQ(values, "2");
}

TEST_F(ReplyParser, HandsOutAnEmptyListInImportMode)
{
  EXPECT_TRUE(access.parseXMLDasReply(readReply("S", "<a>1</a>"), true, &values));
  EXPECT_EQ(values, "");
}

TEST_F(ReplyParser, ComparesTheKindExactly)
{
  EXPECT_FALSE(collect(replyOf("READ_RESPONSE", "S", "<a>1</a>")));
  EXPECT_FALSE(collect(replyOf("read_response ", "S", "<a>1</a>")));
  EXPECT_FALSE(collect(replyOf("error_response", "S", "<a>1</a>")));
  EXPECT_FALSE(collect(replyOf("", "S", "<a>1</a>")));
  EXPECT_EQ(values, "untouched");
}

TEST_F(ReplyParser, JudgesAReplyWithoutAKindByTheOneBefore)
{
  EXPECT_FALSE(collect(R"(<Schema name="S"></Schema>)"));
  EXPECT_TRUE(collect(updateReply()));
  EXPECT_TRUE(collect(R"(<Schema name="S"></Schema>)"));
  EXPECT_TRUE(collect(readReply("S", "<a>1</a>")));
  EXPECT_FALSE(collect(R"(<Schema name="S"></Schema>)")) << "a read reply needs a column";
}

TEST_F(ReplyParser, EmptiesTheKindWhenItsElementStarts)
{
  EXPECT_TRUE(collect(updateReply()));
  EXPECT_FALSE(collect("<Schema><ReasonForMessage/></Schema>"));
}

TEST_F(ReplyParser, ForgetsTheKindOfTheReplyBeforeWhenAReplyBreaksOffInsideItsOwn)
{
  EXPECT_TRUE(collect(updateReply()));
  EXPECT_FALSE(collect("<Schema><ReasonForMessage>update_resp"));
  EXPECT_FALSE(collect("<Schema></Schema>"));
}

TEST_F(ReplyParser, AppliesNoValueToAnItemOfTheIndexColumnItself)
{
  load({ItemLine("i").das("S", "Idx").index("Idx", "1").set("i")});
  EXPECT_THAT(import(readReply("S", "<Entry><Idx>1</Idx></Entry>")), IsEmpty());
}

TEST_F(ReplyParser, ReportsMalformedXmlWithMessageAndLineWhateverTheGateSays)
{
  const auto lines = traced([&] { EXPECT_FALSE(collect("<Schema>\n</Schemo>")); });
  EXPECT_THAT(lines, ElementsAre("log 2 parser error [mismatched tag] at [2]\n"));
  EXPECT_EQ(values, "untouched");
}

TEST_F(ReplyParser, ReportsAnEmptyReply)
{
  EXPECT_THAT(traced([&] { EXPECT_FALSE(collect("")); }),
              ElementsAre("log 2 parser error [no element found] at [1]\n"));
}

TEST_F(ReplyParser, ReportsThatThereIsNoMemoryForAParser)
{
  EXPECT_TRUE(collect(updateReply()));
  parsersLeft = false;
  const auto lines = traced([&] { EXPECT_FALSE(collect(updateReply())) << "whatever the reply before was"; });
  parsersLeft = true;
  EXPECT_THAT(lines, ElementsAre("log 2 parser error [out of memory] at [0]\n"));
  EXPECT_EQ(values, "untouched");
}

TEST_F(ReplyParser, LogsTheReplyWhileLevelFiveIsOpen)
{
  recording::behaviour().openLevel = 5;
  EXPECT_THAT(traced([&] { collect("<Schema/>"); }), ElementsAre("log 5 parseXMLDasReply \"<Schema/>\""));
  recording::behaviour().openLevel = 4;
  EXPECT_THAT(traced([&] { collect("<Schema/>"); }), IsEmpty());
}

TEST_F(ReplyParser, AppliesAColumnToItsItem)
{
  load({ItemLine("i").das("S", "C").set("i")});
  EXPECT_THAT(import(readReply("S", "<C>v</C>")), ElementsAre(R"(set i("v", ""))"));
  EXPECT_TRUE(imported);
}

TEST_F(ReplyParser, KeepsWhatWasAppliedBeforeAnError)
{
  load({ItemLine("i").das("S", "C").set("i")});
  const auto lines = import(R"(<Schema name="S"><C>v</C><broken></Schema>)");
  EXPECT_EQ(lines.front(), R"(set i("v", ""))");
  EXPECT_FALSE(imported);
}

TEST_F(ReplyParser, AppliesColumnsEvenWhenTheKindIsRefused)
{
  load({ItemLine("i").das("S", "C").set("i")});
  EXPECT_THAT(import(replyOf("error_response", "S", "<C>v</C>")), ElementsAre(R"(set i("v", ""))"));
  EXPECT_FALSE(imported);
}

TEST_F(ReplyParser, IgnoresUnknownSchemasAndColumns)
{
  load({ItemLine("i").das("S", "C").set("i")});
  EXPECT_THAT(import(readReply("T", "<C>v</C>")), IsEmpty());
  EXPECT_THAT(import(readReply("S", "<c>v</c>")), IsEmpty());
  EXPECT_TRUE(imported);
}

TEST_F(ReplyParser, IgnoresAnItemThatLostItsSetter)
{
  load({ItemLine("i").das("S", "C").set("i")});
  item("i").setter = nullptr;
  EXPECT_THAT(import(readReply("S", "<C>v</C>")), IsEmpty());
}

TEST_F(ReplyParser, ToleratesRepliesBeforeAMapIsLoaded)
{
  EXPECT_THAT(import(readReply("S", "<C>v</C>")), IsEmpty());
  EXPECT_TRUE(imported);
}

TEST_F(ReplyParser, FindsRowsByTheIndexColumnBeforeThem)
{
  load({ItemLine("one").das("S", "C").index("Idx", "1").set("one"),
        ItemLine("two").das("S", "C").index("Idx", "2").set("two")});
  EXPECT_THAT(import(readReply("S", "<Entry><Idx>1</Idx><C>a</C></Entry><Entry><Idx>2</Idx><C>b</C></Entry>")),
              ElementsAre(R"(set one("a", "1"))", R"(set two("b", "2"))"));
}

TEST_F(ReplyParser, FindsTheItemsOfEachSchemaOfAReply)
{
  load({ItemLine("s").das("S", "C").set("s"), ItemLine("t").das("T", "C").set("t")});
  EXPECT_THAT(import(R"(<All><Schema name="S"><C>a</C></Schema><Schema name="T"><C>b</C></Schema></All>)"),
              ElementsAre(R"(set s("a", ""))", R"(set t("b", ""))"));
}

TEST_F(ReplyParser, AppliesAValueBeforeItsIndexToTheRowBefore)
{
  load({ItemLine("one").das("S", "C").index("Idx", "1").set("one"),
        ItemLine("two").das("S", "C").index("Idx", "2").set("two")});
  EXPECT_THAT(import(readReply("S", "<Entry><Idx>1</Idx></Entry><Entry><C>b</C><Idx>2</Idx></Entry>")),
              ElementsAre(R"(set one("b", "1"))"));
}

TEST_F(ReplyParser, ForgetsTheRowAtASchemaWithAName)
{
  load({ItemLine("one").das("S", "C").index("Idx", "1").set("one")});
  import(readReply("S", "<Entry><Idx>1</Idx></Entry>"));
  EXPECT_THAT(import(readReply("S", "<C>b</C>")), IsEmpty());
}

TEST_F(ReplyParser, KeepsSchemaAndRowAtASchemaWithoutAName)
{
  load({ItemLine("one").das("S", "C").index("Idx", "1").set("one")});
  import(readReply("S", "<Entry><Idx>1</Idx></Entry>"));
  EXPECT_THAT(import(R"(<Schema title="T" Name="T"><C>b</C></Schema>)"), ElementsAre(R"(set one("b", "1"))"));
}

TEST_F(ReplyParser, TakesNoAttributeForTheNameThatMerelyBeginsOrEndsLikeIt)
{
  EXPECT_TRUE(collect(replyOf("update_response", "S", "")));
  EXPECT_TRUE(collect(R"(<Schema names="T" nam="U" rename="V" Name="W"/>)"));
  EXPECT_EQ(access.reply.schema, "S");
  EXPECT_TRUE(collect(R"(<Schema namespace="T" name="X" name2="Y"/>)"));
  EXPECT_EQ(access.reply.schema, "X");
}

TEST_F(ReplyParser, TakesTheFirstNameOfTwo)
{
  const char* attributes[] = {"name", "first", "name", "second", nullptr};
  DASStartElementHandler(&manager, "Schema", attributes);
  EXPECT_EQ(access.reply.schema, "first");
}

TEST_F(ReplyParser, TakesTheNameAmongOtherAttributes)
{
  load({ItemLine("i").das("S", "C").set("i")});
  EXPECT_THAT(import(R"(<Schema version="name" name="S" more="T"><C>b</C></Schema>)"),
              ElementsAre(R"(set i("b", ""))"));
}

TEST_F(ReplyParser, JoinsTextThatAnEntitySplits)
{
  load({ItemLine("i").das("S", "C").set("i")});
  EXPECT_THAT(import(readReply("S", "<C>a&amp;b&lt;c</C>")), ElementsAre(R"(set i("a&b<c", ""))"));
}

TEST_F(ReplyParser, EmptiesTheBufferAtEveryElementStart)
{
  load({ItemLine("i").das("S", "C").set("i")});
  EXPECT_THAT(import(readReply("S", "noise<C>v</C>")), ElementsAre(R"(set i("v", ""))"));
  EXPECT_THAT(import(readReply("S", "<C>lost<Entry/>kept</C>")), ElementsAre(R"(set i("kept", ""))"));
}

TEST_F(ReplyParser, PreparesTheErrorTextForEachSetter)
{
  load({ItemLine("i").das("S", "C").set("i")});
  import(readReply("S", "<C>v</C>"));
  EXPECT_EQ(setter("i").errorOnEntry, "no setter available");
}

TEST_F(ReplyParser, AppliesEmptyCellsWhileStartingUp)
{
  load({ItemLine("i").das("S", "C").standard("7").both("i")});
  EXPECT_THAT(import(readReply("S", "<C></C>")), ElementsAre(R"(set i("", ""))"));
}

TEST_F(ReplyParser, RestoresTheDefaultOfAnEmptyCellAfterStartUp)
{
  load({ItemLine("i").das("S", "C").standard("7").both("i")});
  getter("i").value = "8";
  manager.setStartup(false);
  EXPECT_THAT(import(readReply("S", "<C></C>")), ElementsAre(R"(get i(""))", R"(set i("7", ""))"));
  EXPECT_THAT(access.changedItems, ElementsAre(&item("i")));
}

TEST_F(ReplyParser, LeavesAnItemWithoutGetterAloneWhenItsCellIsEmptyAfterStartUp)
{
  load({ItemLine("i").das("S", "C").standard("7").set("i")});
  manager.setStartup(false);
  EXPECT_THAT(import(readReply("S", "<C></C>")), IsEmpty());
}

TEST_F(ReplyParser, ComparesAValueWithTheLiveOneAfterStartUp)
{
  load({ItemLine("i").das("S", "C").both("i")});
  getter("i").value = "v";
  manager.setStartup(false);
  EXPECT_THAT(import(readReply("S", "<C>v</C>")), ElementsAre(R"(get i(""))"));
  EXPECT_THAT(import(readReply("S", "<C>w</C>")), ElementsAre(R"(get i(""))", R"(set i("w", ""))"));
}

TEST_F(ReplyParser, AppliesAValueWithoutComparisonWhenThereIsNoGetter)
{
  load({ItemLine("i").das("S", "C").set("i")});
  manager.setStartup(false);
  EXPECT_THAT(import(readReply("S", "<C>v</C>")), ElementsAre(R"(set i("v", ""))"));
  EXPECT_THAT(access.changedItems, IsEmpty());
}

TEST_F(ReplyParser, DecryptsEncryptedItems)
{
  load({ItemLine("i").das("S", "C").set("i").encrypted()});
  const auto lines = import(readReply("S", "<C>" + recording::encrypted("pass") + "</C>"));
  EXPECT_EQ(lines.back(), R"(set i("pass", ""))");
  manager.setStartup(false);
  load({ItemLine("j").das("S", "D").both("j").encrypted()});
  EXPECT_EQ(import(readReply("S", "<D>" + recording::encrypted("word") + "</D>")).back(), R"(set j("word", ""))");
  EXPECT_EQ(import(readReply("S", "<C>" + recording::encrypted("new") + "</C>")).back(), R"(set i("new", ""))");
}

TEST_F(ReplyParser, LeavesAnEmptyEncryptedValueEmpty)
{
  load({ItemLine("i").das("S", "C").set("i").encrypted()});
  EXPECT_THAT(import(readReply("S", "<C></C>")), ElementsAre(R"(set i("", ""))"));
}

TEST_F(ReplyParser, ReportsAValueThatCanNotBeDecryptedAndAppliesWhatIsLeft)
{
  load({ItemLine("i").das("S", "C").set("i").encrypted()});
  EXPECT_THAT(import(readReply("S", "<C>plain</C>")),
              ElementsAre(R"(fromEncryptedText("plain"))", "log 2 decryptData failed to base64decode data item",
                          R"(set i("plain", ""))"));
}

TEST_F(ReplyParser, DecryptsOnlyWhatIsMarkedExactlyTrue)
{
  load({ItemLine("i").das("S", "C").set("i").encrypted("TRUE"), ItemLine("j").das("S", "D").set("j").encrypted("yes")});
  EXPECT_THAT(import(readReply("S", "<C>x</C><D>y</D>")), ElementsAre(R"(set i("x", ""))", R"(set j("y", ""))"));
}

TEST_F(ReplyParser, AsksTheStartUpFlagAtEachColumn)
{
  load({ItemLine("i").das("S", "C").both("i"), ItemLine("j").das("S", "D").both("j")});
  setter("i").hook = [&] { manager.setStartup(false); };
  EXPECT_THAT(import(readReply("S", "<C>v</C><D>w</D>")),
              ElementsAre(R"(set i("v", ""))", R"(get j(""))", R"(set j("w", ""))"));
}

TEST_F(ReplyParser, OffersItsHandlersByTheirPlainNames)
{
  load({ItemLine("i").das("S", "C").set("i")});
  const char* attributes[] = {"name", "S", nullptr};
  DASStartElementHandler(&manager, "Schema", attributes);
  EXPECT_EQ(access.reply.schema, "S");
  access.reply.importMode = true;
  DASStartElementHandler(&manager, "C", nullptr);
  DASCharacterDataHandler(&manager, "value and more", 5);
  DASEndElementHandler(&manager, "C");
  EXPECT_EQ(recording::trace().back(), R"(set i("value", ""))");
}

TEST_F(ReplyParser, LetsAnExceptionOutOfAHandlerThatNoParserCalled)
{
  load({ItemLine("i").das("S", "C").set("i")});
  setter("i").hook = [] { throw std::runtime_error("no"); };
  access.reply.schema = "S";
  access.reply.importMode = true;
  EXPECT_THROW(DASEndElementHandler(&manager, "C"), std::runtime_error);
}

} // namespace
