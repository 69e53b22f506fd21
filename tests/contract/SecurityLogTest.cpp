// The lasting record of who changed what.
#include <SecurityLogServiceIfc.h>

#include <string>
#include <vector>

#include "PlatformFixture.h"

namespace
{
class SecurityLogContract : public contract::PlatformTest
{
protected:
  /// An event as the manager hands it over.
  void log(const std::string& record, bool failed = false)
  {
    auto* service = found<SecurityLogServiceIfc>("SecurityLogServiceIfc");
    ASSERT_NE(service, nullptr);
    service->logSecurityEvent(1700000000, 4, 1, 5, 3, failed, record, "", "");
  }

  std::size_t recordsAdded()
  {
    return platform->securityRecords().size() - before;
  }

  std::size_t before = platform == nullptr ? 0 : platform->securityRecords().size();
};
} // namespace

TEST_F(SecurityLogContract, KeepsEachEventInTheOrderTheyCameIn)
{
  for (const char* record : {"first", "second", "third"})
    log(record);
  const std::vector<std::string> records = platform->securityRecords();
  ASSERT_EQ(recordsAdded(), 3U);
  EXPECT_NE(records[before].find("first"), std::string::npos);
  EXPECT_NE(records[before + 1].find("second"), std::string::npos);
  EXPECT_NE(records[before + 2].find("third"), std::string::npos);
}

TEST_F(SecurityLogContract, KeepsAnEventThatIsLikeTheLastOne)
{
  log("same");
  log("same");
  EXPECT_EQ(recordsAdded(), 2U);
}

TEST_F(SecurityLogContract, KeepsEventsOfWhatFailed)
{
  log("denied", true);
  ASSERT_EQ(recordsAdded(), 1U);
  EXPECT_NE(platform->securityRecords().back().find("denied"), std::string::npos);
}

TEST_F(SecurityLogContract, EventOfSeveralLinesIsOneRecord)
{
  log("begin\nmiddle\r\nend\n");
  ASSERT_EQ(recordsAdded(), 1U);
  for (const char* part : {"begin", "middle", "end"})
    EXPECT_NE(platform->securityRecords().back().find(part), std::string::npos) << part;
}

TEST_F(SecurityLogContract, TakesAnyText)
{
  const std::vector<std::string> texts = {"",     "\t",  std::string("a\0b", 3),  "\x1b[2J", "\xFF\xFE", "\xC3\xA4",
                                          "%s%n", "\\n", std::string(100000, 'x')};
  for (const std::string& text : texts)
    log(text);
  EXPECT_EQ(recordsAdded(), texts.size());
}

TEST_F(SecurityLogContract, TakesAnyTimeAndAnyCodes)
{
  auto* service = found<SecurityLogServiceIfc>("SecurityLogServiceIfc");
  ASSERT_NE(service, nullptr);
  service->logSecurityEvent(0, 0, 0, 0, 0, false, "zero", "user", "origin");
  service->logSecurityEvent(-1, -1, -1, -1, -1, true, "negative", "user", "origin");
  EXPECT_EQ(recordsAdded(), 2U);
}
