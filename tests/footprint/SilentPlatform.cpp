// A platform that does nothing and keeps nothing, so that what is measured on it is the library's own.
#include <ClientUtils.h>
#include <CriticalSection.h>
#include <DASUtilsStrings.h>
#include <DasCrypt.h>
#include <ManageableData.h>
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

struct ManageableData::Content
{
};

ManageableData::ManageableData() = default;

ManageableData::~ManageableData() = default;

void ManageableData::setRootId(const std::string&, LocalMgmtIfc*)
{
}

std::string ManageableData::getRootId() const
{
  return "";
}

void ManageableData::addRootId(const std::string&, LocalMgmtIfc*)
{
}

void ManageableData::getRootIds(std::vector<std::string>&)
{
}

bool ManageableData::interogate(const std::string&, const std::string&, std::string& value)
{
  value.clear();
  return false;
}

void ManageableData::populate(const std::string&, const std::string&, const std::string&)
{
}

void ManageableData::addRejectReason(std::string, std::string, std::string)
{
}

bool ManageableData::isRejectListEmpty()
{
  return true;
}

bool ManageableData::areAllRejectReasons(const std::string&)
{
  return true;
}

bool DasCrypt::toEncryptedText(const std::string&, std::string&)
{
  return false;
}

bool DasCrypt::fromEncryptedText(const std::string&, std::string&)
{
  return false;
}

std::string ClientUtils::escapeXMLString(const std::string& text)
{
  return text;
}

std::string ClientUtils::hidePassword(const std::string&, const std::string& value)
{
  return value;
}
