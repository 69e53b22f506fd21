// Names that mean something to XML or to SQL.
#include "DasFixture.h"

namespace
{
using hosttest::errorOf;
using hosttest::holds;
using hosttest::readReply;
using hosttest::updateReply;
class DasNames : public hosttest::DasFixture
{
};

const char* const cruelNames[] = {"x'; DROP TABLE \"Plain\"; --",
                                  "x\"; DROP TABLE \"Plain\"; --",
                                  "two words",
                                  "sqlite_master",
                                  "SQLITE_sequence",
                                  "~schemas",
                                  "~columns",
                                  "~row",
                                  "rowid",
                                  "select",
                                  ":v0",
                                  "?1",
                                  "%s%n",
                                  "a.b",
                                  "\xC3\xA4",
                                  "Robert'); DELETE FROM \"Plain\" WHERE ('1'='1",
                                  "name<&>\t\n\r"};

std::string inAttribute(const std::string& text)
{
  std::string escaped;
  for (const char character : text)
  {
    const std::string marks = "&<>\"'\t\n\r";
    if (marks.find(character) == std::string::npos)
      escaped += character;
    else
      escaped += "&#" + std::to_string(static_cast<int>(character)) + ";";
  }
  return escaped;
}
} // namespace

TEST_F(DasNames, AnySchemaNameIsJustAName)
{
  update("Plain", "<A>stays</A>");
  for (const char* name : cruelNames)
  {
    das.provision({{name, "", {"A"}, {}}});
    const std::string reply = update(inAttribute(name), "<A>1</A>");
    EXPECT_TRUE(holds(reply, "update_response")) << reply;
    EXPECT_EQ(das.storedCell(name, "A", "", ""), "1") << name;
    EXPECT_TRUE(holds(read(inAttribute(name)), "<A>1</A>")) << name;
  }
  EXPECT_EQ(read("Plain"), readReply("Plain", "<A>stays</A>"));
}

TEST_F(DasNames, AnyColumnNameDoesNoHarm)
{
  const std::vector<std::string> columns(std::begin(cruelNames), std::end(cruelNames));
  das.provision({{"Cruel", "", columns, {}}});
  for (const char* name : {"~row", "rowid", "select", "a.b", "sqlite_master"})
    update("Cruel", std::string("<") + name + ">x</" + name + ">");
  EXPECT_EQ(das.storedCell("Cruel", "rowid", "", ""), "x");
  EXPECT_EQ(read("Cruel"), readReply("Cruel", "<sqlite_master>x</sqlite_master><rowid>x</rowid><select>x</select>"
                                              "<a.b>x</a.b>"));
}

TEST_F(DasNames, AnyIndexValueIsJustAValue)
{
  for (const char* value : cruelNames)
    EXPECT_EQ(update("Rows", "<Entry><Idx>" + inAttribute(value) + "</Idx><A>1</A></Entry>"), updateReply("Rows"));
  for (const char* value : cruelNames)
    EXPECT_EQ(das.storedCell("Rows", "A", "Idx", value), "1") << value;
  EXPECT_EQ(update("Plain", "<A>1</A>"), updateReply("Plain"));
}

TEST_F(DasNames, SchemasThatDifferOnlyInCaseAreDifferent)
{
  das.provision({{"PLAIN", "", {"A"}, {}}, {"pLaIn", "", {"A"}, {}}});
  update("Plain", "<A>1</A>");
  update("PLAIN", "<A>2</A>");
  EXPECT_EQ(das.storedCell("Plain", "A", "", ""), "1");
  EXPECT_EQ(das.storedCell("PLAIN", "A", "", ""), "2");
  EXPECT_EQ(das.storedCell("pLaIn", "A", "", ""), std::nullopt);
}

TEST_F(DasNames, ColumnsThatDifferOnlyInCaseAreDifferent)
{
  das.provision({{"Case", "id", {"ID", "Port", "port", "PORT"}, {}}});
  update("Case", "<Entry><id>1</id><port>a</port><PORT>b</PORT><ID>c</ID></Entry>");
  EXPECT_EQ(read("Case"), readReply("Case", "<Entry><id>1</id><ID>c</ID><port>a</port><PORT>b</PORT></Entry>"));
}

TEST_F(DasNames, EachSchemaHasATableOfItsName)
{
  update("Plain", "<A>1</A>");
  EXPECT_EQ(hosttest::queryText(file, "SELECT A FROM Plain"), "1");
}

TEST_F(DasNames, SchemaNameIsEscapedInReplies)
{
  EXPECT_EQ(read("a&amp;&lt;&quot;&#9;&#10;&#13;"),
            hosttest::errorReply("a&amp;&lt;&quot;&#9;&#10;&#13;",
                                 "there is no schema &apos;a&amp;&lt;&quot;\t\n&#13;&apos;"));
}

TEST_F(DasNames, IndexColumnThatIsNoElementNameCannotBeShown)
{
  das.provision({{"Odd", "two words", {"A"}, {"1"}}});
  EXPECT_EQ(read("Odd"),
            hosttest::errorReply("Odd", "the schema has a column whose name cannot be written as an element"));
}

TEST_F(DasNames, NamesOfTheMessagesCannotBeColumns)
{
  for (const char* name : {"Schema", "ReasonForMessage", "ResultCols", "Entry", "Context"})
  {
    EXPECT_EQ(errorOf(
                  [&] {
                    das.provision({{"New", "", {name}, {}}});
                  }),
              "schema 'New': column '" + std::string(name) + "' is named like an element of the messages");
    EXPECT_NE(errorOf([&] { das.provision({{"New", name, {}, {}}}); }), "");
  }
}

TEST_F(DasNames, EmptyNamesAndNamesThatXmlCannotCarryAreRefused)
{
  EXPECT_EQ(errorOf([&] { das.provision({{"", "", {"A"}, {}}}); }), "a schema has an empty name");
  EXPECT_EQ(errorOf([&] { das.provision({{"New", "", {""}, {}}}); }), "a column of schema 'New' has an empty name");
  EXPECT_NE(errorOf([&] { das.provision({{std::string("a\0b", 3), "", {"A"}, {}}}); }), "");
  EXPECT_NE(errorOf([&] { das.provision({{"New", "", {"\xFF"}, {}}}); }), "");
  EXPECT_NE(errorOf([&] { das.provision({{"New", "Idx", {}, {"\x01"}}}); }), "");
}
