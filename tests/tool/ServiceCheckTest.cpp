// A service is tried against its map: what its callbacks and its validator make of the defaults.
#include "service/ServiceCheck.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "base/StartError.h"
#include "check/Finding.h"

using namespace cli;
using testing::HasSubstr;

namespace
{

class ServiceCheckTest : public testing::Test
{
protected:
  ServiceCheckTest()
  {
    std::string pattern = (std::filesystem::temp_directory_path() / "ServiceCheckTestXXXXXX").string();
    folder = ::mkdtemp(pattern.data());
  }
  ~ServiceCheckTest() override
  {
    std::filesystem::remove_all(folder);
  }

  /// The findings as "root id rule", and their texts one a line.
  std::vector<std::string> findings(const std::string& service, const std::string& lines, int patience = 30)
  {
    const std::filesystem::path map = folder / "map.csv";
    std::ofstream(map) << lines;
    std::vector<std::string> found;
    for (const ServiceFinding& each :
         checkService(SERVICES "/" + service + ".so", map, progress, std::chrono::seconds(patience)))
    {
      EXPECT_NE(check::findRule(each.rule), nullptr) << each.rule << " is told by nobody";
      found.push_back(each.rootId + " " + each.rule);
      texts += each.text + "\n";
    }
    return found;
  }

  /// Findings of a map of one item of the picky service, apart from callbacks that it does not use.
  std::vector<std::string> checkItem(const std::string& line, int patience = 30)
  {
    std::vector<std::string> found;
    for (const std::string& each : findings("Picky", line, patience))
    {
      if (each.find(" unused-") == std::string::npos)
        found.push_back(each);
    }
    return found;
  }

  std::filesystem::path folder;
  std::string texts;
  Progress progress{"trying a service"};
};

using Found = std::vector<std::string>;

} // namespace

TEST_F(ServiceCheckTest, HasNothingToSayOfTheSample)
{
  const auto findings = checkService(SAMPLE_SERVICE, SAMPLE_MAP, progress);
  EXPECT_TRUE(findings.empty()) << findings.front().rootId << " " << findings.front().rule << ": "
                                << findings.front().text;
}

TEST_F(ServiceCheckTest, NamesCallbacksThatTheServiceLacks)
{
  EXPECT_EQ(checkItem("bell.tune,Bell,Tune,,,a,setTune,getTune,,,,\n"),
            (Found{"bell.tune unresolved-setter", "bell.tune unresolved-getter"}));
  EXPECT_THAT(texts, HasSubstr("the service registers no setter setTune\n"));
}

TEST_F(ServiceCheckTest, NamesCallbacksThatNoItemNames)
{
  EXPECT_THAT(findings("Picky", "bell.digit,Bell,Digit,,,5,setDigit,getDigit,,,,\n"),
              testing::IsSupersetOf({" unused-setter", " unused-getter"}));
  EXPECT_THAT(texts, HasSubstr("no item names the setter setThrowing\n"));
  EXPECT_THAT(texts, testing::Not(HasSubstr("setDigit\n")));
}

TEST_F(ServiceCheckTest, TellsARefusedDefaultWithItsReason)
{
  EXPECT_EQ(checkItem("bell.digit,Bell,Digit,,,loud,setDigit,getDigit,,,,\n"), Found{"bell.digit default-refused"});
  EXPECT_THAT(texts, HasSubstr("its setter setDigit refuses the default loud: must be one digit\n"));
}

TEST_F(ServiceCheckTest, TellsARefusedAlternativeDefault)
{
  EXPECT_EQ(checkItem("bell.digit,Bell,Digit,,,5,setDigit,getDigit,,,77,\n"), Found{"bell.digit alternative-refused"});
  EXPECT_THAT(texts, HasSubstr("refuses the alternative default 77: must be one digit\n"));
}

TEST_F(ServiceCheckTest, TakesNoAlternativeThatIsNotThere)
{
  EXPECT_EQ(checkItem("bell.digit,Bell,Digit,,,5,setDigit,getDigit,,,,\n"), Found{});
}

TEST_F(ServiceCheckTest, TakesARefusalOfWhatIsSoAlreadyForNone)
{
  EXPECT_EQ(checkItem("bell.once,Bell,Once,,,5,setOnce,,,,,\n"), Found{});
}

TEST_F(ServiceCheckTest, TellsWhereTheGetterAnswersSomethingElse)
{
  EXPECT_EQ(checkItem("bell.upper,Bell,Upper,,,ding,setUpper,getUpper,,,DONG,\n"), Found{"bell.upper default-differs"});
  EXPECT_THAT(texts, HasSubstr("its getter getUpper answers DING after the default ding\n"));
}

TEST_F(ServiceCheckTest, ShowsNoSecret)
{
  EXPECT_EQ(checkItem("bell.upper,Bell,Upper,,,ding,setUpper,getUpper,,,,true\n"), Found{"bell.upper default-differs"});
  EXPECT_THAT(texts, testing::Not(HasSubstr("ding")));
  EXPECT_THAT(texts, testing::Not(HasSubstr("DING")));
}

TEST_F(ServiceCheckTest, LeavesItemsOfTheLocalStoreAlone)
{
  EXPECT_EQ(checkItem("bell.digit,,,,,loud,setDigit,getDigit,,,,\n"), Found{});
}

TEST_F(ServiceCheckTest, AsksTheValidatorAboutAGroupOfDefaults)
{
  const std::string first = "bell.first,Bell,First,,,1,setFirst,,,Pair,,\n";
  EXPECT_EQ(checkItem(first + "bell.second,Bell,Second,,,1,setSecond,,,Pair,2,\n"),
            Found{"bell.first group-alternative-refused"});
  EXPECT_THAT(texts, HasSubstr("refuses the alternative defaults of its group Pair: they differ\n"));
  EXPECT_EQ(checkItem(first + "bell.second,Bell,Second,,,2,setSecond,,,Pair,1,\n"),
            Found{"bell.first group-default-refused"});
}

TEST_F(ServiceCheckTest, TellsWhatTheValidatorListsWrongly)
{
  EXPECT_EQ(checkItem("bell.one,Bell,First,,,1,setFirst,,,Pair,,\nbell.second,Bell,Second,,,1,setSecond,,,Pair,,\n"),
            (Found{"bell.one group-item-unknown", "bell.one group-item-missing"}));
  EXPECT_THAT(texts, HasSubstr("lists bell.first, which is no item of the group Pair\n"));
}

TEST_F(ServiceCheckTest, MissesTheValidatorOfAMapWithGroups)
{
  EXPECT_EQ(findings("ThrowingSetter", "bell.volume,Bell,Volume,,,1,,,,Pair,,\n"),
            (Found{" unused-setter", "bell.volume no-validator"}));
}

TEST_F(ServiceCheckTest, TellsWhatThrows)
{
  EXPECT_EQ(checkItem("bell.a,Bell,A,,,1,setThrowing,,,,,\n"), (Found{" start-throws", "bell.a setter-throws"}));
  EXPECT_THAT(texts, HasSubstr("its setter setThrowing throws: the amplifier is off\n"));
  EXPECT_EQ(checkItem("bell.a,Bell,A,,,1,setDigit,getThrowing,,,,\n"),
            (Found{" start-throws", "bell.a getter-throws"}));
}

TEST_F(ServiceCheckTest, SurvivesACrash)
{
  EXPECT_EQ(checkItem("bell.a,Bell,A,,,x,setDigit,,,,crash,\nbell.b,Bell,B,,,1,setCrash,,,,crash,\n"),
            (Found{"bell.a default-refused", "bell.a alternative-refused", " crash"}));
  EXPECT_THAT(texts, HasSubstr("when its setter setCrash got the alternative default crash of bell.b\n"));
}

TEST_F(ServiceCheckTest, WaitsForNoServiceThatHangs)
{
  EXPECT_EQ(checkItem("bell.a,Bell,A,,,1,setHang,,,,hang,\n", 8), Found{" hang"});
  EXPECT_THAT(texts, HasSubstr("did not come back within 8 s when its setter setHang got the alternative default"));
}

TEST_F(ServiceCheckTest, NeedsAServiceAndAMap)
{
  EXPECT_THROW(findings("NoSuchService", "bell.a,Bell,A,,,1,,,,,,\n"), StartError);
  EXPECT_THROW(findings("Picky", "nothing\n"), StartError);
}

TEST_F(ServiceCheckTest, LeavesNoFolderBehind)
{
  const std::filesystem::path temporary = folder / "temporary";
  std::filesystem::create_directory(temporary);
  ::setenv("TMPDIR", temporary.c_str(), 1);
  checkItem("bell.digit,Bell,Digit,,,5,setDigit,getDigit,,,,\n");
  checkItem("bell.a,Bell,A,,,1,setCrash,,,,crash,\n");
  ::unsetenv("TMPDIR");
  EXPECT_TRUE(std::filesystem::is_empty(temporary));
}
