// Secrets in all the forms in which a transcript could give them away.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "transcript/Secrets.h"

namespace
{
class TranscriptSecrets : public testing::Test
{
protected:
  TranscriptSecrets()
  {
    std::string name = (std::filesystem::temp_directory_path() / "sdm-test-XXXXXX").string();
    folder = ::mkdtemp(name.data());
    std::ofstream(folder / "map.csv") << "lamp.key,Lamp,Blade,,,dflt1234,setKey,getKey,,,,true\n"
                                         "lamp.level,Lamp,Level,,,7,setLevel,getLevel,,,,\n";
    items = std::make_unique<cli::ItemTable>(folder / "map.csv");
    masking = std::make_unique<cli::Masking>(*items);
    secrets = std::make_unique<cli::transcript::Secrets>(*items, *masking);
  }
  ~TranscriptSecrets() override
  {
    std::filesystem::remove_all(folder);
  }

  std::filesystem::path folder;
  std::unique_ptr<cli::ItemTable> items;
  std::unique_ptr<cli::Masking> masking;
  std::unique_ptr<cli::transcript::Secrets> secrets;
};
} // namespace

TEST_F(TranscriptSecrets, AreFoundInTextsByTheirLength)
{
  for (const char* secret : {"hunter2hunter2", "pa55", "x<y&z", "abc"})
    secrets->named(secret);
  const std::vector<std::pair<std::string, std::string>> table = {
      {"is hunter2hunter2 here", "is secret#1 here"},
      {"xhunter2hunter2x", "xsecret#1x"},
      {"is pa55, and pa55", "is secret#2, and secret#2"},
      {"xpa55 pa55x", "xpa55 pa55x"},
      {"pa55", "secret#2"},
      {"as it is: x<y&z", "as it is: secret#3"},
      {"escaped: x&lt;y&amp;z", "escaped: secret#3"},
      {"abc", "abc"},
  };
  for (const auto& [text, safe] : table)
    EXPECT_EQ(secrets->without(text), safe);
}

TEST_F(TranscriptSecrets, TheLongestIsTakenWhereOneIsPartOfAnother)
{
  secrets->named("hunter2h");
  secrets->named("hunter2hunter2");
  EXPECT_EQ(secrets->without("hunter2hunter2 hunter2h"), "secret#2 secret#1");
}

TEST_F(TranscriptSecrets, AreNamedInElementsHoweverShortAndHoweverEscaped)
{
  EXPECT_EQ(secrets->without("<Blade>a</Blade><Level>7</Level>"), "<Blade>secret#1</Blade><Level>7</Level>");
  EXPECT_EQ(secrets->without("<Blade>x&lt;yyy&gt;z</Blade>"), "<Blade>secret#2</Blade>");
  EXPECT_EQ(secrets->plainOf("secret#2"), "x<yyy>z");
  EXPECT_EQ(secrets->without("reason: x<yyy>z"), "reason: secret#2");
}

TEST_F(TranscriptSecrets, HaveOneNameEach)
{
  EXPECT_EQ(secrets->value("lamp.key", "one"), "secret#1");
  EXPECT_EQ(secrets->callbackValue("setKey", "two"), "secret#2");
  EXPECT_EQ(secrets->callbackValue("getKey", "one"), "secret#1");
  EXPECT_EQ(secrets->callbackValue("setLevel", "two"), "two");
  EXPECT_EQ(secrets->value("lamp.level", "one"), "one");
}

TEST_F(TranscriptSecrets, ThatAreDefaultsOfTheMapAreNotLookedFor)
{
  EXPECT_EQ(secrets->value("lamp.key", "dflt1234"), "secret#1");
  EXPECT_EQ(secrets->without("the map says dflt1234"), "the map says dflt1234");
}
