// Which changes the security log hears of, and in what words.
#include <DASUtilsStrings.h>

#include "ManagerTest.h"
#include "consctructSecurityLog.h"
#include "isSecurityLogRequired.h"

namespace
{

TEST(IsSecurityLogRequired, KnowsEveryColumnOfTheFiveSchemas)
{
  for (const std::string& schema : {DASUtilsStrings::SipBaseSettingsSchema, DASUtilsStrings::SipFeatureAccessSchema,
                                    DASUtilsStrings::SipPermissionsSchema, DASUtilsStrings::SnmpSettingsSchema,
                                    DASUtilsStrings::TransportSettingsSchema})
  {
    EXPECT_TRUE(isSecurityLogRequired(schema, "Any")) << schema;
    EXPECT_TRUE(isSecurityLogRequired(schema, "")) << schema;
    EXPECT_FALSE(isSecurityLogRequired(schema + "s", "Any")) << schema;
    EXPECT_FALSE(isSecurityLogRequired(schema.substr(1), "Any")) << schema;
  }
}

TEST(IsSecurityLogRequired, KnowsOneColumnOfAnySchema)
{
  EXPECT_TRUE(isSecurityLogRequired("Other", "CallForwardingAllowed"));
  EXPECT_TRUE(isSecurityLogRequired("", "CallForwardingAllowed"));
  EXPECT_FALSE(isSecurityLogRequired("Other", "callforwardingallowed"));
  EXPECT_FALSE(isSecurityLogRequired("CallForwardingAllowed", "Other"));
  EXPECT_FALSE(isSecurityLogRequired("Other", ""));
  EXPECT_FALSE(isSecurityLogRequired("Other", "CallForwardingAllowedTo"));
  EXPECT_FALSE(isSecurityLogRequired("Other", "NoCallForwardingAllowed"));
  EXPECT_FALSE(isSecurityLogRequired("Other", "CallForwardingAllow"));
}

class ConsctructSecurityLog : public ::testing::Test
{
protected:
  ConsctructSecurityLog()
  {
    item.dasSchema = "Sch";
    item.dasItem = "Col";
    item.dasIndexValue = "3";
  }

  ManagedDataItem item;
};

TEST_F(ConsctructSecurityLog, NamesSchemaColumnAndValue)
{
  EXPECT_EQ(consctructSecurityLog(&item, "val"), "Sch set Col(val)");
}

TEST_F(ConsctructSecurityLog, NamesTheRowOfAnIndexedItem)
{
  item.dasIndexName = "Idx";
  EXPECT_EQ(consctructSecurityLog(&item, "val"), "Sch Idx:3 set Col(val)");
}

TEST_F(ConsctructSecurityLog, MasksEncryptedValues)
{
  item.dasEncrypted = "true";
  EXPECT_EQ(consctructSecurityLog(&item, "val"), "Sch set Col(***)");
}

TEST_F(ConsctructSecurityLog, ShowsTheValueWhenTheFlagIsNotExactlyTrue)
{
  item.dasEncrypted = "TRUE";
  EXPECT_EQ(consctructSecurityLog(&item, "val"), "Sch set Col(val)");
}

TEST_F(ConsctructSecurityLog, EndsInEmptyBracketsForAnEmptyValue)
{
  EXPECT_EQ(consctructSecurityLog(&item, ""), "Sch set Col()");
}

TEST_F(ConsctructSecurityLog, EscapesTheValue)
{
  EXPECT_EQ(consctructSecurityLog(&item, "a<b&c"), "Sch set Col(a&lt;b&amp;c)");
}

} // namespace
