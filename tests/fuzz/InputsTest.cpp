// The file of committed inputs: read as it was written, refused when it is damaged.
#include "Inputs.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace
{

// The bytes "", "a\b<LF>", and 0x00 0xFF, as inputs.py packs them.
const std::string sound = "fuzz inputs 1\n"
                          "0831c907b4ea2b60 \\x00\\xff\n"
                          "cbf29ce484222325 \n"
                          "f84589835ae03014 a\\\\b\\n\n"
                          "end 3\n";

std::string replaced(const std::string& before, const std::string& after)
{
  std::string text = sound;
  return text.replace(text.find(before), before.size(), after);
}

std::string refusalOf(const std::string& text)
{
  try
  {
    fuzz::readInputs(text);
  }
  catch (const std::runtime_error& problem)
  {
    return problem.what();
  }
  return "taken";
}

struct Damage
{
  const char* name;
  std::string text;
  const char* refusal;
};

class DamagedInputs : public testing::TestWithParam<Damage>
{
};

} // namespace

TEST(Inputs, AreTheBytesThatWerePacked)
{
  const std::vector<fuzz::Input> inputs = fuzz::readInputs(sound);
  ASSERT_EQ(inputs.size(), 3U);
  EXPECT_EQ(inputs[0].content, std::string("\0\xFF", 2));
  EXPECT_EQ(inputs[1].content, "");
  EXPECT_EQ(inputs[1].name, "cbf29ce484222325");
  EXPECT_EQ(inputs[2].content, "a\\b\n");
}

TEST_P(DamagedInputs, AreRefusedByTheLine)
{
  EXPECT_EQ(refusalOf(GetParam().text), GetParam().refusal);
}

INSTANTIATE_TEST_SUITE_P(
    All, DamagedInputs,
    testing::Values(Damage{"Empty", "", "line 1 is damaged"}, Damage{"OneLine", "fuzz inputs 1\n", "line 1 is damaged"},
                    Damage{"OtherVersion", replaced("inputs 1", "inputs 2"), "line 1 is damaged"},
                    Damage{"ByteChanged", replaced("a\\\\b", "a\\\\c"), "line 4 is damaged"},
                    Damage{"ByteLost", replaced("\\xff", "\\xf"), "line 2 is damaged"},
                    Damage{"NoDigit", replaced("\\xff", "\\xfg"), "line 2 is damaged"},
                    Damage{"UnknownEscape", replaced("b\\n", "b\\t"), "line 4 is damaged"},
                    Damage{"BareEscape", replaced("b\\n", "b\\"), "line 4 is damaged"},
                    Damage{"RawByte", replaced("\\x00", std::string(1, '\0')), "line 2 is damaged"},
                    Damage{"BlankLost", replaced("cbf29ce484222325 ", "cbf29ce484222325"), "line 3 is damaged"},
                    Damage{"NameChanged", replaced("f845", "f846"), "line 4 is damaged"},
                    Damage{"Twice", replaced("f84589835ae03014", "cbf29ce484222325 \nf84589835ae03014"),
                           "line 4 is damaged"},
                    Damage{"LineLost", replaced("cbf29ce484222325 \n", ""), "line 4 is damaged"},
                    Damage{"EndLost", replaced("end 3\n", ""), "line 4 is damaged"},
                    Damage{"LineEndLost", replaced("end 3\n", "end 3"), "line 5 is damaged"},
                    Damage{"MoreBehindTheEnd", sound + "end 3\n", "line 5 is damaged"},
                    Damage{"LineEndsOfTwoBytes", replaced("1\n", "1\r\n"), "line 1 is damaged"}),
    [](const auto& tested) { return std::string(tested.param.name); });
