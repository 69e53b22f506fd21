// Which settings a map has, and of which types.
#include "new/SkeletonFields.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

using namespace cli::skeleton;
using namespace cli;

namespace
{

class SkeletonFieldsTest : public testing::Test
{
protected:
  std::vector<SkeletonField> fieldsOf(const std::string& lines)
  {
    std::string path = (std::filesystem::temp_directory_path() / "SkeletonFieldsTestXXXXXX").string();
    const int file = ::mkstemp(path.data());
    EXPECT_NE(file, -1);
    std::ofstream(path) << lines;
    table = std::make_unique<ItemTable>(path);
    std::filesystem::remove(path);
    return skeletonFields(*table);
  }

  std::string typeFor(const std::string& value, const std::string& alternative = "")
  {
    return typeOf(fieldsOf("bell.a,Bell,A,,," + value + ",setA,getA,,," + alternative + ",\n").at(0));
  }

  std::unique_ptr<ItemTable> table;
};

} // namespace

TEST_F(SkeletonFieldsTest, GuessTheTypeFromTheDefault)
{
  EXPECT_EQ(typeFor("5"), "int");
  EXPECT_EQ(typeFor("-5"), "int");
  EXPECT_EQ(typeFor("true"), "bool");
  EXPECT_EQ(typeFor("loud"), "std::string");
  EXPECT_EQ(typeFor(""), "std::string");
}

TEST_F(SkeletonFieldsTest, TakeForANumberOnlyWhatIsReadBackAsItWas)
{
  for (const char* text : {"007", "+5", "5 ", "0x5", "-0", "2147483648", "5.0", "True"})
    EXPECT_EQ(typeFor(text), "std::string") << text;
}

TEST_F(SkeletonFieldsTest, GuessFromTheAlternativeDefaultAsWell)
{
  EXPECT_EQ(typeFor("5", "6"), "int");
  EXPECT_EQ(typeFor("5", "auto"), "std::string");
  EXPECT_EQ(typeFor("true", "1"), "std::string");
}

TEST_F(SkeletonFieldsTest, KnowSecretsByTheMapAndByTheirNames)
{
  EXPECT_EQ(typeOf(fieldsOf("bell.a,Bell,A,,,5,setA,,,,,true\n").at(0)), "Secret");
  EXPECT_EQ(typeOf(fieldsOf("bell.password,Bell,A,,,5,setA,,,,,\n").at(0)), "Secret");
}

TEST_F(SkeletonFieldsTest, TakeItemsWithACallbackInCommonForOneSetting)
{
  const auto fields = fieldsOf("bell.a,Bell,A,,,1,setA,getA,,,,\n"
                               "bell.b,Bell,B,,,x,setB,getB,,,,\n"
                               "bell.c,Bell,C,,,2,setA,getB,,,,\n"
                               "bell.d,Bell,D,,,3,setD,,,,,\n");
  ASSERT_EQ(fields.size(), 2U);
  EXPECT_EQ(fields[0].setters, (std::vector<std::string>{"setA", "setB"}));
  EXPECT_EQ(fields[0].getters, (std::vector<std::string>{"getA", "getB"}));
  EXPECT_EQ(typeOf(fields[0]), "std::string");
  EXPECT_EQ(fields[1].name, "d");
}

TEST_F(SkeletonFieldsTest, HaveARowForEachIndexValue)
{
  const auto fields = fieldsOf("bell.a-1,Bell,A,Row,1,5,setA,getA,,,,\nbell.a-2,Bell,A,Row,2,6,setA,getA,,,,\n");
  ASSERT_EQ(fields.size(), 1U);
  EXPECT_EQ(typeOf(fields[0]), "Rows<int>");
  EXPECT_EQ(fields[0].rows, (std::vector<std::pair<std::string, std::string>>{{"1", "5"}, {"2", "6"}}));
}

TEST_F(SkeletonFieldsTest, CountTheLastOfLinesWithOneRootId)
{
  const auto fields = fieldsOf("bell.a,Bell,A,,,x,setA,getA,,,,\nbell.a,Bell,A,,,5,setA,getA,,,,\n");
  ASSERT_EQ(fields.size(), 1U);
  EXPECT_EQ(typeOf(fields[0]), "int");
}

TEST_F(SkeletonFieldsTest, AreNotThereForItemsWithoutCallbacks)
{
  EXPECT_TRUE(fieldsOf("bell.a,Bell,A,,,x,,,,,,\n").empty());
}

TEST_F(SkeletonFieldsTest, ListTheMembersOfGroupsByTheirRows)
{
  const auto fields = fieldsOf("bell.a-1,Bell,A,Row,1,5,setA,getA,,Pair,,\nbell.a-2,Bell,A,Row,2,6,setA,getA,,,,\n");
  const auto members = membersOf(fields.at(0), "setA");
  ASSERT_EQ(members.size(), 1U);
  EXPECT_EQ(members.at("1")->rootId, "bell.a-1");
}
