// What Tab offers in which place.
#include "prompt/Completion.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

using namespace cli;
using List = std::vector<std::string>;

namespace
{

class CompletionTest : public testing::Test
{
protected:
  static ItemTable items()
  {
    const auto path = std::filesystem::temp_directory_path() / ("completion" + std::to_string(::getpid()) + ".csv");
    std::ofstream(path) << "ip.address,S,A,,,,,,,,,\nip.gateway,S,B,,,,,,,,,\nphone.room,,,,,,,,,,,\n"
                           "evil.\x1b[31mid,S,C,,,,,,,,,\nevil.\xc2\x9b,S,D,,,,,,,,,\n";
    ItemTable table(path);
    std::filesystem::remove(path);
    return table;
  }
  List offered(const std::string& line)
  {
    return completions(line, table);
  }

  ItemTable table = items();
};

} // namespace

TEST_F(CompletionTest, OffersCommandsFirst)
{
  EXPECT_EQ(offered("re"), (List{"reset", "reload", "restart"}));
  EXPECT_EQ(offered("get"), (List{"get"}));
  EXPECT_GT(offered("").size(), 10U);
}

TEST_F(CompletionTest, OffersNothingThatCouldSteerTheTerminal)
{
  EXPECT_EQ(offered("show evil."), List());
}

TEST_F(CompletionTest, OffersTheOptionsThatACommandHasLeft)
{
  EXPECT_EQ(offered("list --"), (List{"--json", "--changed"}));
  EXPECT_EQ(offered("list --json --"), (List{"--changed"}));
}

TEST_F(CompletionTest, OffersRootIdsAfterACommandThatTakesThem)
{
  EXPECT_EQ(offered("get ip."), (List{"ip.address", "ip.gateway"}));
  EXPECT_EQ(offered("get ip.address p"), (List{"phone.room"}));
  EXPECT_EQ(offered("show "), (List{"ip.address", "ip.gateway", "phone.room"}));
}

TEST_F(CompletionTest, OffersNothingAfterTheLastArgument)
{
  EXPECT_TRUE(offered("show ip.address ").empty());
  EXPECT_TRUE(offered("quit ").empty());
}

TEST_F(CompletionTest, OffersRootIdsAndNoValuesToSet)
{
  EXPECT_EQ(offered("set ip.a"), (List{"ip.address"}));
  EXPECT_TRUE(offered("set ip.address i").empty());
  EXPECT_EQ(offered("set ip.address 1 ip.g"), (List{"ip.gateway"}));
  EXPECT_EQ(offered("set ip.address \"a b\" ip.g"), (List{"ip.gateway"}));
}

TEST_F(CompletionTest, KeepsDatabaseAndLocalItemsApart)
{
  EXPECT_TRUE(offered("set ph").empty());
  EXPECT_TRUE(offered("import ph").empty());
  EXPECT_EQ(offered("changed "), (List{"phone.room"}));
  EXPECT_TRUE(offered("changed phone.room p").empty());
}

TEST_F(CompletionTest, OffersCommandsToHelpAndLevelsToLog)
{
  EXPECT_EQ(offered("help sec"), (List{"securitylog"}));
  EXPECT_EQ(offered("log ").size(), 7U);
}

TEST_F(CompletionTest, OffersFaultsOfThePlaceThatStandsThere)
{
  EXPECT_EQ(offered("fault "), (List{"das", "encryption", "store", "disk", "off"}));
  EXPECT_EQ(offered("fault das m"), (List{"malformed"}));
  EXPECT_EQ(offered("fault store "), (List{"absent", "refuses"}));
  EXPECT_TRUE(offered("fault store refuses ").empty());
  EXPECT_TRUE(offered("fault off ").empty());
}

TEST_F(CompletionTest, OffersNothingAfterAnUnknownCommand)
{
  EXPECT_TRUE(offered("nonsense ip").empty());
}
