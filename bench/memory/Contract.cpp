// The platform's helpers at the least cost: nothing is locked or encrypted, and nothing logged unless the log is
// opened.
#include <cstdarg>
#include <cstdio>

#include <ClientUtils.h>
#include <CriticalSection.h>
#include <DASUtilsStrings.h>
#include <DasCrypt.h>
#include <RejectReasonsStrings.h>
#include <Semaphore.h>
#include <logAppUni.h>

#include "Log.h"

const std::string RejectReasonsStrings::unchanged_data = "UNCHANGED_DATA";
const std::string RejectReasonsStrings::not_changed = "NOT_CHANGED";

const std::string DASUtilsStrings::SipBaseSettingsSchema = "SipBase";
const std::string DASUtilsStrings::SipFeatureAccessSchema = "SipFeature";
const std::string DASUtilsStrings::SipPermissionsSchema = "SipPermission";
const std::string DASUtilsStrings::SnmpSettingsSchema = "Snmp";
const std::string DASUtilsStrings::TransportSettingsSchema = "Transport";

bench::Log bench::log;

void logAppUni(const char*, const char*, int, int, const char* format, ...)
{
  ++bench::log.lines;
  va_list values;
  va_start(values, format);
  va_list again;
  va_copy(again, values);
  std::string line(static_cast<std::size_t>(std::vsnprintf(nullptr, 0, format, again)), ' ');
  std::vsnprintf(line.data(), line.size() + 1, format, values);
  va_end(again);
  va_end(values);
}

bool loggingOnAppUni(const char*, int)
{
  return bench::log.open;
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
  ++bench::log.masked;
  return value;
}
