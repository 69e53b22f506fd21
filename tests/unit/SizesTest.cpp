// What the size of a word decides, and what it must not decide.
#include <sys/types.h>

#include <PhysicalInterfaceServiceIfc.h>
#include <expat.h>

#include "ManagerTest.h"

namespace
{

using ::testing::ElementsAre;
using unit::ManagerTest;
using unit::readReply;

#ifdef __arm__
// The device passes floating point in its registers, and its words have 32 bits.
static_assert(sizeof(void*) == 4 && sizeof(std::size_t) == 4 && sizeof(long) == 4);
#ifndef __ARM_PCS_VFP
#error "the device's libraries are of the hard-float kind"
#endif
#else
static_assert(sizeof(void*) == 8 && sizeof(std::size_t) == 8 && sizeof(long) == 8);
#endif

// Files may be larger than what a word counts.
static_assert(sizeof(off_t) == 8);
// A time crosses the contract as a word: the framework's closed libraries were built with it.
static_assert(sizeof(time_t) == sizeof(long));
// The comparison of the interface count relies on wrapping around at 32 bits.
static_assert(
    std::is_same_v<decltype(std::declval<PhysicalInterfaceServiceIfc>().getInterfaceCount()), std::uint32_t> &&
    sizeof(std::uint32_t) == sizeof(unsigned));

TEST(SizesTest, LineNumbersAreOfTheSizeTheXmlParserWasBuiltFor)
{
  bool large = false;
  for (const XML_Feature* feature = XML_GetFeatureList(); feature->feature != XML_FEATURE_END; ++feature)
    large = large || feature->feature == XML_FEATURE_LARGE_SIZE;
  EXPECT_EQ(sizeof(XML_Size), large ? 8U : sizeof(long));
}

class WideNumbersTest : public ManagerTest
{
};

TEST_F(WideNumbersTest, AnErrorBehindAMillionLinesIsLoggedWithItsLine)
{
  const std::string text = std::string(1000000, '\n') + "<a></b>";
  EXPECT_THAT(traced([&] { EXPECT_FALSE(access.parseXMLDasReply(text, false, nullptr)); }),
              ElementsAre("log 2 parser error [mismatched tag] at [1000001]\n"));
}

} // namespace
