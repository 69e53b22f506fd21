// Each rule finds what it is about, at its place, and nothing else; and mends it without a change to anything else.
#include <algorithm>
#include <ostream>
#include <set>

#include <gtest/gtest.h>

#include "RuleCase.h"
#include "check/Linter.h"

namespace
{

using checktest::RuleCase;
using cli::MapText;
using cli::check::allRules;

std::vector<RuleCase> allCases()
{
  std::vector<RuleCase> cases;
  for (const auto& subject :
       {checktest::fileCases(), checktest::lineCases(), checktest::textCases(), checktest::nameCases(),
        checktest::identityCases(), checktest::effectCases(), checktest::userDataCases(), checktest::valueCases()})
    cases.insert(cases.end(), subject.begin(), subject.end());
  return cases;
}

/// "LINE:COLUMN RULE", a finding a line.
std::string told(const std::string& content)
{
  const MapText map("map.csv", content);
  const cli::Positions positions(map);
  std::string text;
  for (const cli::check::Finding& finding : cli::check::findingsOf(map, allRules()))
  {
    const auto position = positions.of(finding.place.begin);
    text += std::to_string(position.line) + ":" + std::to_string(position.column) + " " + finding.rule->id + "\n";
  }
  return text;
}

class Rules : public testing::TestWithParam<RuleCase>
{
};

std::string nameOf(const testing::TestParamInfo<RuleCase>& info)
{
  std::string name = info.param.rule;
  std::replace(name.begin(), name.end(), '-', '_');
  return name + "_" + std::to_string(info.index);
}

} // namespace

namespace checktest
{
void PrintTo(const RuleCase& tested, std::ostream* out)
{
  *out << tested.rule;
}
} // namespace checktest

TEST_P(Rules, FindsWhatIsBrokenAtItsPlaceAndNothingElse)
{
  const RuleCase& tested = GetParam();
  EXPECT_EQ(told(tested.broken),
            std::to_string(tested.line) + ":" + std::to_string(tested.column) + " " + tested.rule + "\n");
}

TEST_P(Rules, HasNothingToSayAboutASoundMap)
{
  EXPECT_EQ(told(GetParam().sound), "");
}

TEST_P(Rules, MendsWhatIsSafeAndNothingElse)
{
  const RuleCase& tested = GetParam();
  const auto made = cli::check::mend(MapText("map.csv", tested.broken), allRules());
  EXPECT_EQ(made.content, tested.mended);
  EXPECT_EQ(made.mended.empty(), tested.mended == tested.broken);
}

INSTANTIATE_TEST_SUITE_P(, Rules, testing::ValuesIn(allCases()), nameOf);

TEST(AllRules, HaveACaseEach)
{
  std::set<std::string> tested;
  std::set<std::string> mended;
  for (const RuleCase& each : allCases())
  {
    tested.insert(each.rule);
    if (each.mended != each.broken)
      mended.insert(each.rule);
  }
  for (const auto* rule : allRules())
  {
    EXPECT_EQ(tested.count(rule->id), std::holds_alternative<std::monostate>(rule->look) ? 0U : 1U) << rule->id;
    EXPECT_EQ(mended.count(rule->id) == 1, rule->fixable) << rule->id;
  }
}

TEST(AllRules, AreToldInWholeSentencesUnderNamesOfTheirOwn)
{
  std::set<std::string> names;
  for (const auto* rule : allRules())
  {
    EXPECT_TRUE(names.insert(rule->id).second) << rule->id;
    EXPECT_EQ(std::string(rule->id).find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-"), std::string::npos);
    EXPECT_EQ(std::string(rule->summary).back(), '.') << rule->id;
    EXPECT_GT(std::string(rule->explanation).size(), 60U) << rule->id;
  }
}
