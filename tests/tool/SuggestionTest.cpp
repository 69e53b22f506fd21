// What is near enough to be meant.
#include "base/Suggestion.h"

#include <gtest/gtest.h>

using namespace cli;
using List = std::vector<std::string>;

TEST(Suggestion, FindsSwappedMissingExtraAndWrongLetters)
{
  for (const char* typed : {"lsit", "lst", "liist", "lixt", "LIST"})
    EXPECT_EQ(suggestions(typed, {"set", "list", "log"}).front(), "list") << typed;
}

TEST(Suggestion, FindsWordsThatHoldTheUnknownOne)
{
  EXPECT_EQ(suggestions("protocol", {"transport.protocol", "time.zone"}), (List{"transport.protocol"}));
}

TEST(Suggestion, KeepsSilentWhenNothingIsNear)
{
  EXPECT_TRUE(suggestions("xyzzy", {"list", "set"}).empty());
  EXPECT_TRUE(suggestions("", {"list"}).empty());
  EXPECT_EQ(didYouMean("xyzzy", {"list"}, "\n"), "");
}

TEST(Suggestion, PutsTheNearestFirstAndNotMoreThanThree)
{
  EXPECT_EQ(suggestions("line.pin-4", {"line.pin-1", "line.pin-44", "line.pin-2", "line.pin-3"}).size(), 3U);
  EXPECT_EQ(suggestions("locks", {"log", "unlock", "lock"}).front(), "lock");
}

TEST(Suggestion, JoinsSeveralIntoAQuestion)
{
  EXPECT_EQ(didYouMean("ab", {"abc", "abd"}), "did you mean abc or abd?");
}
