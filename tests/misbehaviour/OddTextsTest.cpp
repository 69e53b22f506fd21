// What becomes of a megabyte, of an empty text, of bytes that are not UTF-8 and of a NUL byte, wherever a callback or
// a service answers with a text.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Stage.h"

namespace
{

using misbehaviour::Stage;

/// What becomes of the text.
enum class Fate
{
  arrives, ///< byte for byte
  stops,   ///< it gets no further; the operation goes on without it
  ends     ///< byte for byte up to the NUL byte, as in every log line
};

struct Answer
{
  const char* operation;
  /// Who answers with the text.
  const char* call;
  /// What stands before it where it arrives.
  const char* before;
  Fate megabyte;
  Fate empty;
  Fate notUtf8;
  Fate nul;

  std::string name() const
  {
    std::string name = std::string(operation) + "_" + call + "_" + before;
    for (char& c : name)
      c = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ? c : '_';
    return name;
  }
  friend void PrintTo(const Answer& answer, std::ostream* out)
  {
    *out << answer.name();
  }
};

const std::vector<Answer>& answers()
{
  constexpr Fate arrives = Fate::arrives;
  constexpr Fate stops = Fate::stops;
  constexpr Fate ends = Fate::ends;
  // Replies are XML: what is not well-formed in them is no reply, and a value of their cells never gets out.
  // clang-format off
  static const std::vector<Answer> all = {
    // operation             who answers           behind                      megabyte  empty    not UTF-8  NUL
    {"start",                 "lookupData",         "set local(\"",             arrives,  arrives, arrives,   arrives},
    {"start",                 "interogate",         "set local(\"",             arrives,  arrives, arrives,   arrives},
    {"start",                 "sendRequest",        "set c(\"",                 arrives,  arrives, stops,     stops},
    {"start",                 "fromEncryptedText",  "set b(\"",                 arrives,  arrives, arrives,   arrives},
    {"start",                 "validateGroup",      "bad failed validation \"", arrives,  arrives, arrives,   ends},
    {"laterStart",            "getValue",           "publishData(a=",           arrives,  arrives, arrives,   arrives},
    {"laterStart",            "sendRequest",        "set c(\"",                 arrives,  stops,   stops,     stops},
    {"setData",               "interogate",         "set a(\"",                 arrives,  arrives, arrives,   arrives},
    {"setData",               "setValue",           "; c|c|",                   arrives,  arrives, arrives,   arrives},
    {"setData",               "validateGroup",      "; |/|",                    arrives,  arrives, arrives,   arrives},
    {"setData",               "getValidGroupItems", "<D>",                      arrives,  arrives, arrives,   arrives},
    {"setData",               "escapeXMLString",    "<A>",                      arrives,  arrives, arrives,   arrives},
    {"setData",               "escapeXMLString",    "Snmp set A(",              arrives,  arrives, arrives,   arrives},
    {"setData",               "toEncryptedText",    "<B>",                      arrives,  arrives, arrives,   arrives},
    {"setData",               "hidePassword",       "trySetData \"a\" = \"",    arrives,  arrives, arrives,   ends},
    {"getData",               "getValue",           " a=",                      arrives,  arrives, arrives,   arrives},
    {"getData",               "sendRequest",        ",c=",                      arrives,  arrives, stops,     stops},
    {"getData",               "fromEncryptedText",  ",f=",                      arrives,  arrives, arrives,   arrives},
    {"manageableDataChanged", "interogate",         "set local(\"",             arrives,  arrives, arrives,   arrives},
    {"importItemFromDAS",     "sendRequest",        "= ",                       arrives,  arrives, arrives,   arrives},
    {"reloadUserData",        "sendRequest",        "set a(\"",                 arrives,  arrives, arrives,   arrives},
    {"reloadUserData",        "fromEncryptedText",  "set b(\"",                 arrives,  arrives, arrives,   arrives},
  };
  // clang-format on
  return all;
}

/// Puts the text in the place of an answer; in the place of the cells' values, where the answer is a reply.
void answerWith(const std::string& call, const std::string& text)
{
  recording::behaviour().everyText = [=](const std::string& answering, std::string& answer)
  {
    if (answering != call)
      return;
    if (call != "sendRequest")
      answer = text;
    for (const char* column : {"A", "C"})
    {
      const std::string begin = std::string("<") + column + ">";
      const std::size_t found = answer.find(begin);
      if (call == "sendRequest" && found != std::string::npos)
        answer.replace(found + 3, answer.find("</", found) - found - 3, text);
    }
  };
}

/// The text, and nothing else, behind what stands before it in an entry of the trace or in the caller's result.
bool isBehind(const std::string& before, const std::string& text, const std::vector<std::string>& lines)
{
  for (const std::string& line : lines)
  {
    const std::size_t found = line.find(before + text);
    const std::size_t end = found + before.size() + text.size();
    if (found != std::string::npos &&
        (end == line.size() || std::string("\"<,);").find(line[end]) != std::string::npos))
      return true;
  }
  return false;
}

class OddTexts : public ::testing::TestWithParam<Answer>
{
protected:
  void expect(const std::string& text, Fate fate)
  {
    const Answer& answer = GetParam();
    const misbehaviour::Operation& operation = misbehaviour::operation(answer.operation);
    Stage stage(operation.loaded);
    answerWith(answer.call, text);
    const auto lines = stage.traceOf(operation);
    const std::string cut = text.substr(0, text.find('\0'));
    EXPECT_EQ(isBehind(answer.before, text, lines), fate == Fate::arrives)
        << ::testing::PrintToString(lines).substr(0, 10000);
    if (fate == Fate::ends)
    {
      EXPECT_TRUE(isBehind(answer.before, cut, lines));
    }
    EXPECT_EQ(recording::behaviour().lockDepth, 0);
    EXPECT_EQ(stage.afterwards(operation.startsOver), misbehaviour::undisturbed(operation.startsOver));
  }
};

TEST_P(OddTexts, ArriveWholeOrNotAtAllWhenTheyAreAMegabyte)
{
  expect(std::string(1024 * 1024, 'm') + "end", GetParam().megabyte);
}

TEST_P(OddTexts, ArriveOrNotWhenTheyAreEmpty)
{
  expect("", GetParam().empty);
}

TEST_P(OddTexts, ArriveOrNotWhenTheyAreNotUtf8)
{
  expect("\xc3\x28\xff\xfe", GetParam().notUtf8);
}

TEST_P(OddTexts, ArriveOrNotWhenAByteInThemIsNul)
{
  expect(std::string("be\0hind", 7), GetParam().nul);
}

INSTANTIATE_TEST_SUITE_P(Answers, OddTexts, ::testing::ValuesIn(answers()),
                         [](const auto& tested) { return tested.param.name(); });

} // namespace
