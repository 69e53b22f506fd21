// The texts that both sides know.
#include <DASUtilsStrings.h>
#include <RejectReasonsStrings.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

TEST(ConstantsContract, ReasonsAreNotEmpty)
{
  EXPECT_NE(RejectReasonsStrings::unchanged_data, "");
  EXPECT_NE(RejectReasonsStrings::not_changed, "");
}

TEST(ConstantsContract, NeitherReasonBeginsWithTheOther)
{
  EXPECT_NE(RejectReasonsStrings::unchanged_data.rfind(RejectReasonsStrings::not_changed, 0), 0U);
  EXPECT_NE(RejectReasonsStrings::not_changed.rfind(RejectReasonsStrings::unchanged_data, 0), 0U);
}

TEST(ConstantsContract, SchemaNamesAreFiveDifferentTexts)
{
  const std::set<std::string> names = {DASUtilsStrings::SipBaseSettingsSchema, DASUtilsStrings::SipFeatureAccessSchema,
                                       DASUtilsStrings::SipPermissionsSchema, DASUtilsStrings::SnmpSettingsSchema,
                                       DASUtilsStrings::TransportSettingsSchema};
  EXPECT_EQ(names.size(), 5U);
  EXPECT_EQ(names.count(""), 0U);
}
