// What a recorder writes down of a run: no text gives a secret away, by whichever way it came.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include <DasCrypt.h>
#include <ManageableData.h>

#include "host/KeyFile.h"
#include "prompt/CommandText.h"
#include "transcript/Recorder.h"
#include "transcript/Secrets.h"

namespace
{
const std::string secret = "hunter2hunter2";

class Recording : public testing::Test
{
protected:
  Recording()
  {
    std::string name = (std::filesystem::temp_directory_path() / "sdm-test-XXXXXX").string();
    folder = ::mkdtemp(name.data());
    std::ofstream(folder / "map.csv") << "lamp.key,Lamp,Key,,,,setKey,getKey,,,,true\n"
                                         "lamp.level,Lamp,Level,,,7,setLevel,getLevel,,,,\n";
    items = std::make_unique<cli::ItemTable>(folder / "map.csv");
    masking = std::make_unique<cli::Masking>(*items);
    recorder = std::make_unique<cli::transcript::Recorder>(folder / "transcript.jsonl", cli::maskedCommand);
    recorder->begin({}, *items, *masking, folder);
    recorder->setterEnded({"setKey", "", secret, true, "", {}});
  }
  ~Recording() override
  {
    host::forgetKey();
    std::filesystem::remove_all(folder);
  }
  /// All but the header and the setter's call that told of the secret, once the run is over.
  std::string written()
  {
    recorder->end();
    recorder.reset();
    std::ifstream file(folder / "transcript.jsonl");
    std::string line;
    std::getline(file, line);
    std::getline(file, line);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::filesystem::path folder;
  std::unique_ptr<cli::ItemTable> items;
  std::unique_ptr<cli::Masking> masking;
  std::unique_ptr<cli::transcript::Recorder> recorder;
};
} // namespace

TEST_F(Recording, HasNoSecretInAnyTextThatMayRepeatIt)
{
  const std::string text = "no: " + secret + " in " + folder.string();
  const std::string value = "is " + secret;
  recorder->setterEnded({"setLevel", text, value, false, text, text});
  recorder->getterEnded({"getLevel", text, value, text});
  recorder->validatorEnded({"validateGroup", "G", false, text, {{{"lamp.level", value}}}, text});
  recorder->operationBegins({"importItemFromDAS", {{"item", text}}, nullptr});
  recorder->operationEnded({"importItemFromDAS", {{"item", "lamp.level"}}, nullptr}, {true, text, text});
  recorder->requestBegins(text);
  host::Exchange exchange;
  exchange.reply = text;
  recorder->exchangeEnded(exchange);
  exchange.failure = text;
  recorder->exchangeEnded(exchange);
  recorder->log({"ServiceDataManager", 2, text});
  recorder->command("nonsense " + secret);
  const std::string told = written();
  EXPECT_EQ(told.find("hunter2"), std::string::npos) << told;
  EXPECT_EQ(told.find(folder.string()), std::string::npos) << told;
  EXPECT_NE(told.find("no: secret#1 in DEVICE"), std::string::npos);
}

TEST_F(Recording, HasNoSecretInWhatThePlatformWasAsked)
{
  const std::string text = "no: " + secret;
  cli::StoreCall store;
  store.operation = "publish";
  store.values = {{"lamp.level", text}, {"lamp.key", "abc"}};
  store.objection = text;
  store.thrown = text;
  recorder->storeEnded(store);
  cli::RecordCall logged;
  logged.record = text;
  logged.thrown = text;
  recorder->recordEnded(logged);
  const std::string told = written();
  EXPECT_EQ(told.find("hunter2"), std::string::npos) << told;
  EXPECT_EQ(told.find("abc"), std::string::npos) << told;
}

TEST_F(Recording, HasNoSecretInTheReasonsForARejection)
{
  ManageableData data;
  data.populate("lamp.level", "lamp.level", "7");
  data.addRejectReason("lamp.level", "lamp.level", "not " + secret);
  recorder->operationEnded({"setData", {}, &data}, {false, {}, {}});
  const std::string told = written();
  EXPECT_NE(told.find(R"("rejects":[{"item":"lamp.level","reason":"not secret#1"}])"), std::string::npos) << told;
}

TEST_F(Recording, NamesASecretThatIsImportedHoweverShort)
{
  recorder->operationEnded({"importItemFromDAS", {{"item", "lamp.key"}}, nullptr}, {true, "abc", {}});
  EXPECT_NE(written().find(R"("value":"secret#2")"), std::string::npos);
}

TEST_F(Recording, NamesTheEncryptedFormOfASecretByTheSecret)
{
  host::useKeyFile(folder / "das.key");
  std::string cell;
  ASSERT_TRUE(DasCrypt::toEncryptedText(secret, cell));
  recorder->operationEnded({"importItemFromDAS", {{"item", "lamp.key"}}, nullptr}, {true, cell, {}});
  recorder->log({"ServiceDataManager", 2, "the cell is " + cell});
  const std::string told = written();
  EXPECT_NE(told.find(R"("value":"secret#1")"), std::string::npos) << told;
  EXPECT_NE(told.find("the cell is secret#1"), std::string::npos) << told;
}

TEST_F(Recording, EndsWithTheNumberOfItsCommands)
{
  recorder->command("list");
  recorder->commandEnded(true);
  recorder->command("lost");
  recorder->commandEnded(false);
  EXPECT_EQ(written(), "{\"command\":\"list\"}\n{\"result\":\"command\",\"outcome\":\"done\"}\n"
                       "{\"command\":\"lost\"}\n{\"result\":\"command\",\"outcome\":\"refused\"}\n"
                       "{\"result\":\"run\",\"commands\":2}\n");
}

TEST_F(Recording, MasksTheValueOfASecretThatReadsLikeAnItem)
{
  // Another value each: what is known as a secret is found by that alone.
  for (const char* command : {"set lamp.key lamp.level", "changed lamp.key lamp.key"})
    recorder->command(command);
  const std::string told = written();
  EXPECT_NE(told.find("set lamp.key secret#2"), std::string::npos) << told;
  EXPECT_NE(told.find("changed lamp.key secret#3"), std::string::npos) << told;
}

TEST(SecretName, IsThePrefixWithANumber)
{
  const std::vector<std::pair<std::string, bool>> table = {{"secret#1", true},   {"secret#12", true},
                                                           {"secret#", false},   {"secret#1x", false},
                                                           {"xsecret#1", false}, {"", false}};
  for (const auto& [text, isName] : table)
    EXPECT_EQ(cli::transcript::isSecretName(text), isName) << text;
}
