// The platform's helpers at the least cost: nothing is logged, locked, masked or encrypted.
#include <ClientUtils.h>
#include <CriticalSection.h>
#include <DASUtilsStrings.h>
#include <DasCrypt.h>
#include <RejectReasonsStrings.h>
#include <Semaphore.h>
#include <logAppUni.h>

const std::string RejectReasonsStrings::unchanged_data = "UNCHANGED_DATA";
const std::string RejectReasonsStrings::not_changed = "NOT_CHANGED";

const std::string DASUtilsStrings::SipBaseSettingsSchema = "SipBase";
const std::string DASUtilsStrings::SipFeatureAccessSchema = "SipFeature";
const std::string DASUtilsStrings::SipPermissionsSchema = "SipPermission";
const std::string DASUtilsStrings::SnmpSettingsSchema = "Snmp";
const std::string DASUtilsStrings::TransportSettingsSchema = "Transport";

void logAppUni(const char*, const char*, int, int, const char*, ...)
{
}

bool loggingOnAppUni(const char*, int)
{
  return false;
}

struct Semaphore::Content
{
};

Semaphore::Semaphore(int, int, bool)
{
}

Semaphore::~Semaphore() = default;

CriticalSection::CriticalSection(Semaphore& taken) : semaphore(taken)
{
}

CriticalSection::~CriticalSection()
{
  static_cast<void>(semaphore);
}

bool DasCrypt::toEncryptedText(const std::string& in, std::string& out)
{
  out = in;
  return true;
}

bool DasCrypt::fromEncryptedText(const std::string& in, std::string& out)
{
  out = in;
  return true;
}

std::string ClientUtils::escapeXMLString(const std::string& text)
{
  return text;
}

std::string ClientUtils::hidePassword(const std::string&, const std::string& value)
{
  return value;
}
