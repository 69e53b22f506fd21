// Escaping to the byte, and which names are masked.
#include <ClientUtils.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "host/Secrets.h"

TEST(EscapeXml, ReplacesMarkupQuotesAndCarriageReturns)
{
  EXPECT_EQ(ClientUtils::escapeXMLString("a&b<c>d\"e'f\rg"), "a&amp;b&lt;c&gt;d&quot;e&apos;f&#13;g");
}

TEST(EscapeXml, LeavesEverythingElse)
{
  const std::string text = std::string("tab\tline\n\xC3\xA4\x01") + '\0' + "\xFF;";
  EXPECT_EQ(ClientUtils::escapeXMLString(text), text);
}

TEST(HidePassword, MasksNamesThatLookSecret)
{
  for (const char* name : {"password",
                           "Password",
                           "PASSWORD",
                           "AdminPassword",
                           "adminpassword",
                           "admin-password",
                           "pass_word",
                           "user.passwd",
                           "PASSWD",
                           "sip/authSecret",
                           "sharedsecret",
                           "client-secrets",
                           "Credential",
                           "loginCredentials",
                           "authToken",
                           "authtoken",
                           "ACCESS_TOKEN",
                           "tokens",
                           "passphrase",
                           "WlanPassPhrase",
                           "privateKey",
                           "snmp.privacyKey",
                           "AuthenticationKey",
                           "private_key",
                           "PRIVATE KEY",
                           "tls.privatekey.1",
                           "preSharedKey",
                           "wpaPsk",
                           "WPA_PSK",
                           "pin",
                           "PIN",
                           "userPin",
                           "user-pin-1",
                           "PINCode",
                           "pincode",
                           "SIMPin",
                           "pin2",
                           "SimPuk",
                           "snmp.community",
                           "readCommunity",
                           "COMMUNITY_RO",
                           "userPass",
                           "sip_pass",
                           "pass",
                           "dbPwd",
                           "apiKey",
                           "Passcode",
                           "secretKey",
                           "encryptionKey",
                           "snmpPrivKey"})
    EXPECT_EQ(ClientUtils::hidePassword(name, "value"), "*****") << name;
}

TEST(HidePassword, ShowsNamesThatOnlyResembleSecrets)
{
  for (const char* name : {"",
                           "pinned",
                           "spinner",
                           "Spinner",
                           "keyboard",
                           "keyboardLayout",
                           "key",
                           "hotkey1",
                           "publicKey",
                           "secretary",
                           "SecretaryNumber",
                           "opinion",
                           "shipping",
                           "PinnedContact",
                           "spin",
                           "tokenizer",
                           "passThrough",
                           "bypass",
                           "Compass",
                           "passport",
                           "port",
                           "tcp.keepAlive",
                           "commune",
                           "immunity",
                           "wordPad",
                           "display.brightness",
                           "happyInfo",
                           "MappingTable",
                           "keyPadTones",
                           "accessPoint",
                           "crypto.cipher"})
    EXPECT_EQ(ClientUtils::hidePassword(name, "value"), "value") << name;
}

TEST(HidePassword, MasksAnEmptySecretToo)
{
  EXPECT_EQ(ClientUtils::hidePassword("password", ""), "*****");
  EXPECT_EQ(ClientUtils::hidePassword("port", ""), "");
}

TEST(HidePassword, MaskTellsNothingOfTheLength)
{
  EXPECT_EQ(ClientUtils::hidePassword("password", "x"), ClientUtils::hidePassword("password", std::string(99, 'x')));
}

TEST(HidePassword, MasksWhatIsMarked)
{
  EXPECT_EQ(ClientUtils::hidePassword("marked.item", "value"), "value");
  host::markSecret("marked.item");
  EXPECT_EQ(ClientUtils::hidePassword("marked.item", "value"), "*****");
  EXPECT_EQ(ClientUtils::hidePassword("marked.Item", "value"), "value");
  EXPECT_EQ(ClientUtils::hidePassword("marked.item2", "value"), "value");
  EXPECT_TRUE(host::isSecret("marked.item"));
}

TEST(HidePassword, ItemsMayBeMarkedWhileOthersAreMasked)
{
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back(
        [t]
        {
          for (int i = 0; i < 500; ++i)
          {
            const std::string rootId = "thread" + std::to_string(t) + "-" + std::to_string(i);
            host::markSecret(rootId);
            EXPECT_EQ(ClientUtils::hidePassword(rootId, "value"), "*****");
          }
        });
  for (std::thread& thread : threads)
    thread.join();
}
