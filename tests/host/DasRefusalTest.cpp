// Requests that are refused: each with its reason, and nothing changed.
#include "DasFixture.h"

namespace
{
using hosttest::errorReply;
using hosttest::readRequest;
using hosttest::request;
using hosttest::updateRequest;

struct Refused
{
  const char* title;
  std::string request;
  std::string schema;
  std::string why;
};

class DasRefusal : public hosttest::DasFixture, public testing::WithParamInterface<Refused>
{
};

/// Shows the case by its title when it fails.
void PrintTo(const Refused& refused, std::ostream* stream)
{
  *stream << refused.title;
}

const std::string quote = "&apos;";

std::string name(const std::string& text)
{
  return quote + text + quote;
}

const Refused refusedReads[] = {
    {"UnknownSchema", readRequest("Nowhere"), "Nowhere", "there is no schema " + name("Nowhere")},
    {"EmptySchemaName", readRequest(""), "", "there is no schema " + name("")},
    {"SchemaInAnotherCase", readRequest("plain"), "plain", "there is no schema " + name("plain")},
    {"UnknownColumn", readRequest("Plain", "<ResultCols>C</ResultCols>"), "Plain",
     "schema " + name("Plain") + " has no such column"},
    {"ColumnInAnotherCase", readRequest("Plain", "<ResultCols>a</ResultCols>"), "Plain",
     "schema " + name("Plain") + " has no such column"},
    {"EmptyColumn", readRequest("Plain", "<ResultCols></ResultCols>"), "Plain",
     "schema " + name("Plain") + " has no such column"},
    {"TwoResultCols", readRequest("Plain", "<ResultCols>A</ResultCols><ResultCols>B</ResultCols>"), "Plain",
     "element " + name("ResultCols") + " stands twice"},
    {"ElementInResultCols", readRequest("Plain", "<ResultCols><A/></ResultCols>"), "Plain",
     "element " + name("A") + " does not belong into " + name("ResultCols")},
    {"EntryInAnUnindexedSchema", readRequest("Plain", "<ResultCols>A</ResultCols><Entry><Idx>1</Idx></Entry>"), "Plain",
     "schema " + name("Plain") + " has no index column, so an " + name("Entry") + " does not belong there"},
    {"WrongIndexColumn", readRequest("Rows", "<ResultCols>A</ResultCols><Entry><A>1</A></Entry>"), "Rows",
     "an " + name("Entry") + " of schema " + name("Rows") + " begins with its index column " + name("Idx") + ", not " +
         name("A")},
    {"EntryBeforeResultCols", readRequest("Rows", "<Entry><Idx>1</Idx></Entry><ResultCols>A</ResultCols>"), "Rows",
     "an " + name("Entry") + " stands before any " + name("ResultCols")},
    {"EntryWithoutResultCols", readRequest("Rows", "<Entry><Idx>1</Idx></Entry>"), "Rows",
     "an " + name("Entry") + " stands before any " + name("ResultCols")},
    {"TwoEntries",
     readRequest("Rows", "<ResultCols>A</ResultCols><Entry><Idx>1</Idx></Entry><Entry><Idx>2</Idx></Entry>"), "Rows",
     "element " + name("Entry") + " stands twice"},
    {"EmptyEntry", readRequest("Rows", "<ResultCols>A</ResultCols><Entry></Entry>"), "Rows",
     "an " + name("Entry") + " is empty"},
    {"MoreThanTheIndex", readRequest("Rows", "<ResultCols>A</ResultCols><Entry><Idx>1</Idx><A/></Entry>"), "Rows",
     "a read request" + quote + "s " + name("Entry") + " holds more than the index column"},
    {"CellInARead", readRequest("Plain", "<A>1</A>"), "Plain",
     "element " + name("A") + " does not belong into a read request"},
};

const Refused refusedUpdates[] = {
    {"UnknownSchema", updateRequest("Nowhere", "<A>1</A>"), "Nowhere", "there is no schema " + name("Nowhere")},
    {"UnknownColumn", updateRequest("Plain", "<A>new</A><C>1</C>"), "Plain",
     "schema " + name("Plain") + " has no column " + name("C")},
    {"UnknownColumnInAnEntry", updateRequest("Rows", "<Entry><Idx>1</Idx><C>1</C></Entry>"), "Rows",
     "schema " + name("Rows") + " has no column " + name("C")},
    {"MissingIndexColumn", updateRequest("Rows", "<A>new</A>"), "Rows",
     "schema " + name("Rows") + " is indexed, so column " + name("A") + " belongs into an " + name("Entry") +
         " after " + name("Idx")},
    {"WrongIndexColumn", updateRequest("Rows", "<Entry><B>1</B><A>new</A></Entry>"), "Rows",
     "an " + name("Entry") + " of schema " + name("Rows") + " begins with its index column " + name("Idx") + ", not " +
         name("B")},
    {"IndexColumnNotFirst", updateRequest("Rows", "<Entry><A>new</A><Idx>1</Idx></Entry>"), "Rows",
     "an " + name("Entry") + " of schema " + name("Rows") + " begins with its index column " + name("Idx") + ", not " +
         name("A")},
    {"IndexColumnTwice", updateRequest("Rows", "<Entry><Idx>1</Idx><Idx>2</Idx><A>new</A></Entry>"), "Rows",
     "column " + name("Idx") + " stands twice in an " + name("Entry")},
    {"ColumnTwiceInAnEntry", updateRequest("Rows", "<Entry><Idx>1</Idx><A>new</A><A>newer</A></Entry>"), "Rows",
     "column " + name("A") + " stands twice in an " + name("Entry")},
    {"EntryInAnUnindexedSchema", updateRequest("Plain", "<Entry><Idx>1</Idx><A>new</A></Entry>"), "Plain",
     "schema " + name("Plain") + " has no index column, so an " + name("Entry") + " does not belong there"},
    {"EntryWithoutColumns", updateRequest("Rows", "<Entry><Idx>9</Idx></Entry>"), "Rows",
     "an update request" + quote + "s " + name("Entry") + " holds no column beside the index column"},
    {"EmptyEntry", updateRequest("Rows", "<Entry/>"), "Rows", "an " + name("Entry") + " is empty"},
    {"NothingToChange", updateRequest("Plain", ""), "Plain", "an update request changes nothing"},
    {"ResultColsInAnUpdate", updateRequest("Plain", "<A>new</A><ResultCols>A</ResultCols>"), "Plain",
     "element " + name("ResultCols") + " does not belong there"},
    {"SecondReason", updateRequest("Plain", "<A>new</A><ReasonForMessage>read_request</ReasonForMessage>"), "Plain",
     "element " + name("ReasonForMessage") + " does not belong there"},
    {"SchemaInASchema", updateRequest("Plain", "<A>new</A><Schema name=\"Rows\"/>"), "Plain",
     "element " + name("Schema") + " does not belong there"},
    {"EntryInAnEntry", updateRequest("Rows", "<Entry><Idx>1</Idx><Entry><A>new</A></Entry></Entry>"), "Rows",
     "element " + name("Entry") + " does not belong there"},
    {"ElementInACell", updateRequest("Plain", "<A>new<B>1</B></A>"), "Plain",
     "element " + name("B") + " does not belong into " + name("A")},
    {"AttributeOfACell", updateRequest("Plain", "<A kind=\"x\">new</A>"), "Plain",
     "element " + name("A") + " has attribute " + name("kind")},
    {"TextInTheSchema", updateRequest("Plain", "<A>new</A>stray"), "Plain",
     "element " + name("Schema") + " holds text where elements belong"},
    {"TextInAnEntry", updateRequest("Rows", "<Entry><Idx>1</Idx>stray<A>new</A></Entry>"), "Rows",
     "element " + name("Entry") + " holds text where elements belong"},
};

const std::string cannotBeRead = "the request cannot be read: ";
const std::string noReason =
    "the reason for the message is neither " + name("read_request") + " nor " + name("update_request");
const std::string reasonLate = "the request does not begin with its " + name("ReasonForMessage");

const Refused refusedTexts[] = {
    {"UnknownReason", request("Plain", "delete_request", "<A>new</A>"), "Plain", noReason},
    {"ReasonInUpperCase", request("Plain", "READ_REQUEST", ""), "Plain", noReason},
    {"ReasonWithBlank", request("Plain", "read_request ", ""), "Plain", noReason},
    {"NoReason", "<Schema name=\"Plain\"></Schema>", "Plain", reasonLate},
    {"ReasonNotFirst", "<Schema name=\"Plain\"><A>new</A><ReasonForMessage>update_request</ReasonForMessage></Schema>",
     "Plain", reasonLate},
    {"NoName", "<Schema><ReasonForMessage>read_request</ReasonForMessage></Schema>", "",
     "element " + name("Schema") + " has no name"},
    {"OtherAttribute", "<Schema name=\"Plain\" x=\"1\"/>", "",
     "element " + name("Schema") + " has attribute " + name("x")},
    {"OtherRoot", "<Scheme name=\"Plain\"/>", "", "the request is no " + name("Schema") + " but " + name("Scheme")},
    {"EmptyText", "", "", cannotBeRead + "no element found at line 1, column 1"},
    {"OpenEnd", "<Schema name=\"Plain\">", "", cannotBeRead + "no element found at line 1, column 22"},
    {"CrossedTags", "<Schema name=\"Plain\"><A></Schema></A>", "",
     cannotBeRead + "mismatched tag at line 1, column 27"},
    {"SecondRoot", readRequest("Plain") + "<x/>", "",
     cannotBeRead + "junk after document element at line 1, column 118"},
    {"UnknownEntity", updateRequest("Plain", "<A>&foo;</A>"), "",
     cannotBeRead + "undefined entity at line 1, column 114"},
    {"DocumentType", "<!DOCTYPE Schema [<!ENTITY a \"x\">]>" + std::string("<Schema name=\"Plain\"/>"), "",
     cannotBeRead + "a document type declaration is not taken"},
    {"DeepNesting", "<a><a><a><a><a><a><a><a><a></a></a></a></a></a></a></a></a></a>", "",
     cannotBeRead + "elements are nested too deep"},
};
} // namespace

TEST_P(DasRefusal, SaysWhyAndChangesNothing)
{
  update("Plain", "<A>old</A>");
  update("Rows", "<Entry><Idx>1</Idx><A>old</A></Entry>");
  const std::string plainBefore = read("Plain");
  const std::string rowsBefore = read("Rows");

  EXPECT_EQ(hosttest::send(das, GetParam().request), errorReply(GetParam().schema, GetParam().why));

  EXPECT_EQ(read("Plain"), plainBefore);
  EXPECT_EQ(read("Rows"), rowsBefore);
}

namespace
{
std::string titleOf(const testing::TestParamInfo<Refused>& info)
{
  return info.param.title;
}
} // namespace

INSTANTIATE_TEST_SUITE_P(Reads, DasRefusal, testing::ValuesIn(refusedReads), titleOf);
INSTANTIATE_TEST_SUITE_P(Updates, DasRefusal, testing::ValuesIn(refusedUpdates), titleOf);
INSTANTIATE_TEST_SUITE_P(Texts, DasRefusal, testing::ValuesIn(refusedTexts), titleOf);

using DasRefusalOf = hosttest::DasFixture;

TEST_F(DasRefusalOf, NullRequestIsAReplyToo)
{
  EXPECT_EQ(das.sendRequest(nullptr, 0), errorReply("", cannotBeRead + "there is no text or too much of it"));
}

TEST_F(DasRefusalOf, ReasonNeverHoldsAValue)
{
  for (const char* rest : {"<A>hunter2</A><C>hunter2</C>", "<Entry><Idx>hunter2</Idx><A>hunter2</A></Entry>", "hunter2",
                           "<A>hunter2<B/></A>"})
    EXPECT_FALSE(hosttest::holds(update("Plain", rest), "hunter2")) << rest;
}
