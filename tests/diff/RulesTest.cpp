// Each pair of maps is told by its rules, and the other way round by their mirrors; each rule has a pair.
#include <algorithm>
#include <ostream>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "Pair.h"
#include "diff/Change.h"

namespace
{

using cli::diff::allRules;
using cli::diff::Change;
using cli::diff::changesOf;
using cli::diff::findRule;
using cli::diff::Rule;
using difftest::MapPair;

std::vector<Change> changes(const std::string& oldMap, const std::string& newMap)
{
  return changesOf({"old.csv", oldMap}, {"new.csv", newMap});
}

/// Words in the order of the alphabet.
std::string sorted(std::vector<std::string> words)
{
  std::sort(words.begin(), words.end());
  std::string text;
  for (const std::string& word : words)
    text += (text.empty() ? "" : " ") + word;
  return text;
}

std::string told(const std::string& oldMap, const std::string& newMap)
{
  std::vector<std::string> rules;
  for (const Change& change : changes(oldMap, newMap))
    rules.emplace_back(change.rule->id);
  return sorted(rules);
}

std::string mirrored(const std::string& rules)
{
  std::istringstream words(rules);
  std::vector<std::string> mirrors;
  for (std::string word; words >> word;)
    mirrors.emplace_back(findRule(word) == nullptr ? "no rule " + word : findRule(word)->mirror);
  return sorted(mirrors);
}

std::vector<MapPair> allPairs()
{
  std::vector<MapPair> pairs;
  for (const auto& subject : {difftest::itemPairs(), difftest::cellPairs(), difftest::valuePairs(),
                              difftest::linePairs(), difftest::silentPairs()})
    pairs.insert(pairs.end(), subject.begin(), subject.end());
  return pairs;
}

class Pairs : public testing::TestWithParam<MapPair>
{
};

std::string nameOf(const testing::TestParamInfo<MapPair>& info)
{
  return info.param.name;
}

} // namespace

namespace difftest
{
void PrintTo(const MapPair& tested, std::ostream* out)
{
  *out << tested.name;
}
} // namespace difftest

TEST_P(Pairs, AreToldByTheirRules)
{
  EXPECT_EQ(told(GetParam().oldMap, GetParam().newMap), GetParam().rules);
}

TEST_P(Pairs, AreToldByTheMirrorsTheOtherWayRound)
{
  EXPECT_EQ(told(GetParam().newMap, GetParam().oldMap), mirrored(GetParam().rules));
}

INSTANTIATE_TEST_SUITE_P(, Pairs, testing::ValuesIn(allPairs()), nameOf);

TEST(AllDiffRules, HaveAPairEach)
{
  std::set<std::string> tested;
  for (const MapPair& pair : allPairs())
  {
    std::istringstream words(std::string(pair.rules) + " " + mirrored(pair.rules));
    for (std::string word; words >> word;)
      tested.insert(word);
  }
  for (const Rule& rule : allRules())
    EXPECT_EQ(tested.count(rule.id), 1U) << rule.id;
}

TEST(AllDiffRules, HaveAMirrorThatMirrorsThem)
{
  for (const Rule& rule : allRules())
  {
    const Rule* const mirror = findRule(rule.mirror);
    ASSERT_NE(mirror, nullptr) << rule.id;
    EXPECT_STREQ(mirror->mirror, rule.id);
  }
}

TEST(AllDiffRules, AreToldInWholeSentencesUnderNamesOfTheirOwn)
{
  std::set<std::string> names;
  for (const Rule& rule : allRules())
  {
    EXPECT_TRUE(names.insert(rule.id).second) << rule.id;
    EXPECT_EQ(std::string(rule.id).find_first_not_of("abcdefghijklmnopqrstuvwxyz-"), std::string::npos) << rule.id;
    EXPECT_EQ(std::string(rule.summary).back(), '.') << rule.id;
    EXPECT_NE(std::string(rule.stored).back(), '.') << rule.id;
    EXPECT_NE(std::string(rule.notStored).back(), '.') << rule.id;
    EXPECT_GT(std::string(rule.explanation).size(), 60U) << rule.id;
  }
}

TEST(Changes, HaveTheValuesAndTheLinesOfBothMaps)
{
  const std::string head = "ok.item,Sound,Value,,,1,setOk,getOk,,,,\n";
  const auto all = changes(head + "a.b,Sch,Col,,,old,setB,,,,,\n", "a.b,Sch,Col,,,new,setB,,,,,\n" + head);
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(all[0].text, "the default of \"a.b\" was \"old\" and is \"new\"");
  EXPECT_EQ(all[0].before + ">" + all[0].after, "old>new");
  EXPECT_EQ(all[0].oldPlace->begin, head.size() + 14);
  EXPECT_EQ(all[0].newPlace->begin, 14U);
}

TEST(Changes, TellOfLocalItemsWhatHoldsForThem)
{
  const std::string local = "a.b,,,,,1,setB,,,,,\n";
  for (const auto& [after, rule] :
       {std::pair("", "item-removed"), std::pair("a.b,,,,,2,setB,,,,,\n", "default-changed"),
        std::pair("a.b,,,,,1,,,,,,\n", "setter-removed"), std::pair("a.b,,,,,1,setB,,,,2,\n", "alternative-added")})
  {
    const auto all = changes(local, after);
    ASSERT_EQ(all.size(), 1U) << rule;
    EXPECT_STREQ(all[0].rule->id, rule);
    EXPECT_NE(all[0].stored + all[0].notStored, std::string(all[0].rule->stored) + all[0].rule->notStored) << rule;
    EXPECT_EQ(all[0].stored.find("database"), std::string::npos) << rule;
  }
}

TEST(Changes, HideTheValuesOfSecretsAndCompareThem)
{
  const std::vector<std::string> secrets = {"a.b,Sch,Col,,,%,setB,,,,,true\n",   "a.b,Sch,Col,,,%,setB,,,,,True\n",
                                            "a.b,Sch,Col,,,%,setB,,,,,true\r\n", "sip.password,Sch,Col,,,%,setB,,,,,\n",
                                            "a.b,Sch,Pin,,,%,setB,,,,,\n",       "a.b,Passwords,Value,,,%,setB,,,,,\n",
                                            "a.b,Sch,Col,,,x,setB,,,,%,true\n",  "user.pin,,,,,%,setB,,,,,\n"};
  for (const std::string& line : secrets)
  {
    const auto with = [&](const std::string& value) { return std::string(line).replace(line.find('%'), 1, value); };
    EXPECT_TRUE(changes(with("hunter2"), with("hunter2")).empty()) << line;
    const auto all = changes(with("hunter2"), with("swordfish9"));
    ASSERT_EQ(all.size(), 1U) << line;
    EXPECT_EQ(all[0].before + all[0].after, "***** (before)***** (after)") << line;
    EXPECT_EQ((all[0].text + all[0].stored + all[0].notStored).find("hunter2"), std::string::npos) << line;
    EXPECT_EQ((all[0].text + all[0].stored + all[0].notStored).find("swordfish9"), std::string::npos) << line;
  }
}

TEST(Changes, HideAValueThatIsASecretInOneOfTheMapsAlone)
{
  for (const auto& [before, after] : {std::pair("a.b,Sch,Col,,,hunter2,setB,,,,,true\n", "a.b,Sch,Col,,,x,setB,,,,,\n"),
                                      std::pair("a.b,Sch,Col,,,x,setB,,,,,\n", "a.b,Sch,Col,,,hunter2,setB,,,,,true\n"),
                                      std::pair("a.pin,Sch,Col,,,hunter2,setB,,,,,\n", "a.b,Sch,Col,,,x,setB,,,,,\n"),
                                      std::pair("q.q,,,,,,setQ,,,,,\n", "a.pin,,,,,hunter2,setB,,,,,\n"),
                                      std::pair("a.pin,,,,,hunter2,setB,,,,,\n", "q.q,,,,,,setQ,,,,,\n")})
  {
    for (const Change& change : changes(before, after))
      EXPECT_EQ((change.text + change.before + change.after).find("hunter2"), std::string::npos) << change.text;
  }
}

TEST(Changes, KeepTheirFingerprintsWhenLinesMove)
{
  const std::string before = "a.b,Sch,Col,,,1,setB,,,,,\n";
  const std::string after = "a.b,Sch,Col,,,2,setB,,,,,\n";
  const auto here = changes(before, after);
  const auto there = changes("\n\n" + difftest::other + before, difftest::other + after);
  ASSERT_EQ(here.size(), 1U);
  ASSERT_EQ(there.size(), 1U);
  EXPECT_EQ(fingerprint(here[0]), fingerprint(there[0]));
  EXPECT_NE(fingerprint(here[0]), fingerprint(changes(before, "a.b,Sch,Col,,,3,setB,,,,,\n").at(0)));
  EXPECT_NE(fingerprint(here[0]),
            fingerprint(changes("a.c,Sch,Col,,,1,setB,,,,,\n", "a.c,Sch,Col,,,2,setB,,,,,\n").at(0)));
}

TEST(Changes, HaveFingerprintsThatTellNothingOfSecrets)
{
  const auto of = [](const std::string& value)
  { return fingerprint(changes("a.pin,,,,,1,setB,,,,,\n", "a.pin,,,,," + value + ",setB,,,,,\n").at(0)); };
  EXPECT_EQ(of("1234"), of("9999"));
}
