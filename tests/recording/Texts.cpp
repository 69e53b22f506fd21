// Encryption that can be read, escaping, masking and constants.
#include <ClientUtils.h>
#include <DASUtilsStrings.h>
#include <DasCrypt.h>
#include <RejectReasonsStrings.h>

#include "Trace.h"

namespace RejectReasonsStrings
{
const std::string unchanged_data = "UNCHANGED_DATA";
const std::string not_changed = "NOT_CHANGED";
} // namespace RejectReasonsStrings

namespace DASUtilsStrings
{
const std::string SipBaseSettingsSchema = "SipBase";
const std::string SipFeatureAccessSchema = "SipFeature";
const std::string SipPermissionsSchema = "SipPermission";
const std::string SnmpSettingsSchema = "Snmp";
const std::string TransportSettingsSchema = "Transport";
} // namespace DASUtilsStrings

namespace
{

// Hexadecimal digits are base64 digits too, and four of them in front and two a byte make whole groups of four
// with the padding below.
const std::string mark = "c0de";
const char* const digits = "0123456789abcdef";

} // namespace

namespace recording
{

std::string encrypted(const std::string& plain)
{
  std::string text = mark;
  for (const char c : plain)
  {
    const auto byte = static_cast<unsigned char>(c);
    text += digits[byte >> 4U];
    text += digits[byte & 15U];
  }
  return plain.size() % 2 == 0 ? text : text + "==";
}

} // namespace recording

bool DasCrypt::toEncryptedText(const std::string& in, std::string& out)
{
  recording::note("toEncryptedText(" + recording::quoted(in) + ")");
  recording::called("toEncryptedText");
  if (recording::behaviour().encryptionFails)
  {
    out.clear();
    return false;
  }
  out = recording::answered("toEncryptedText", recording::encrypted(in));
  return true;
}

bool DasCrypt::fromEncryptedText(const std::string& in, std::string& out)
{
  recording::note("fromEncryptedText(" + recording::quoted(in) + ")");
  recording::called("fromEncryptedText");
  if (recording::behaviour().encryptionFails)
    return false;
  std::string plain;
  std::string text = in;
  while (!text.empty() && text.back() == '=')
    text.pop_back();
  for (std::size_t i = mark.size(); i + 1 < text.size(); i += 2)
  {
    const std::size_t high = std::string(digits).find(text[i]);
    const std::size_t low = std::string(digits).find(text[i + 1]);
    if (high > 15 || low > 15)
      return false;
    plain += static_cast<char>(high << 4U | low);
  }
  if (in != recording::encrypted(plain))
    return false;
  out = recording::answered("fromEncryptedText", plain);
  return true;
}

std::string ClientUtils::escapeXMLString(const std::string& text)
{
  recording::called("escapeXMLString");
  std::string escaped;
  for (const char c : text)
  {
    switch (c)
    {
    case '&':
      escaped += "&amp;";
      break;
    case '<':
      escaped += "&lt;";
      break;
    case '>':
      escaped += "&gt;";
      break;
    case '"':
      escaped += "&quot;";
      break;
    case '\'':
      escaped += "&apos;";
      break;
    case '\r':
      escaped += "&#13;";
      break;
    default:
      escaped += c;
    }
  }
  return recording::answered("escapeXMLString", escaped);
}

std::string ClientUtils::hidePassword(const std::string& rootId, const std::string& value)
{
  ++recording::behaviour().hidePasswordCalls;
  recording::called("hidePassword");
  return recording::answered("hidePassword",
                             rootId == recording::behaviour().secret && !rootId.empty() ? "***" : value);
}
