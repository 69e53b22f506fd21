#include "Settings.h"

namespace commsservice
{
namespace
{

constexpr int lineCount = 3;
constexpr int keyCount = 4;
constexpr int handsetCount = 2;

using Table = std::vector<Setting>;

Table transport()
{
  return {
      Setting{"TransportProtocol", "udp", oneOf({"udp", "tcp", "tls"})}.restarts(),
      Setting{"LocalPort", "5060", port()}.restarts(),
      Setting{"TlsPort", "5061", port()}.restarts(),
      Setting{"RtpFirstPort", "16384", wholeNumber(1024, 65534)}.member("RtpPorts", "transport.rtpFirstPort"),
      Setting{"RtpLastPort", "16482", wholeNumber(1025, 65535)}.member("RtpPorts", "transport.rtpLastPort"),
      Setting{"KeepAliveSeconds", "30", wholeNumber(0, 600)},
      Setting{"DscpSignalling", "24", wholeNumber(0, 63)},
      Setting{"DscpMedia", "46", wholeNumber(0, 63)},
      Setting{"VerifyServer", "true", trueOrFalse()}.restarts(),
      Setting{"PacketTime", "20", oneOf({"10", "20", "30", "40"})},
  };
}

Table sip()
{
  return {
      Setting{"Registrar", "sip.example.com", orNone(host())}.restarts(),
      Setting{"RegistrarPort", "5060", port()}.restarts(),
      Setting{"SipDomain", "example.com", orNone(host())}.restarts(),
      Setting{"OutboundProxy", "", orNone(host())}.restarts(),
      Setting{"RegistrationSeconds", "3600", wholeNumber(60, 86400)},
      Setting{"SessionSeconds", "1800", wholeNumber(90, 7200)},
      Setting{"SipUserName", "", text(0, 64)}.member("SipCredentials", "sip.userName"),
      Setting{"SipPassword", "", orNone(text(6, 64))}.hidden().member("SipCredentials", "sip.password"),
      Setting{"ToneSending", "rtp-event", oneOf({"rtp-event", "sip-info", "in-band"})},
      Setting{"PreferredCodec", "g722", oneOf({"g722", "g711a", "g711u", "opus"})},
      Setting{"CallWaiting", "true", trueOrFalse()},
  };
}

Table permissions()
{
  return {
      Setting{"ExternalCalls", "true", trueOrFalse()},
      Setting{"InternationalCalls", "false", trueOrFalse()},
      Setting{"PremiumCalls", "false", trueOrFalse()},
      Setting{"EmergencyCalls", "true", alwaysTrue("emergency calls cannot be barred")},
      Setting{"CallRecording", "false", trueOrFalse()},
      Setting{"Forwarding", "true", trueOrFalse()},
  };
}

Table featureAccess()
{
  return {
      Setting{"PickupCode", "*8", dialString()},
      Setting{"ParkCode", "*68", dialString()},
      Setting{"RetrieveCode", "*88", dialString()},
      Setting{"VoicemailCode", "*97", dialString()},
      Setting{"DoNotDisturbCode", "*78", dialString()},
      Setting{"HideNumberCode", "*67", dialString()},
      Setting{"UnlockPin", "", orNone(digits(4, 8))}.hidden(),
  };
}

Table snmp()
{
  return {
      Setting{"SnmpEnabled", "false", trueOrFalse()}.restarts(),
      Setting{"SnmpPort", "161", port()}.restarts(),
      Setting{"SnmpVersion", "v3", oneOf({"v2c", "v3"})}.restarts(),
      Setting{"ReadCommunity", "", orNone(text(4, 32))}.hidden(),
      Setting{"SnmpUserName", "", text(0, 32)},
      Setting{"AuthenticationKey", "", orNone(text(8, 64))}.hidden(),
      Setting{"PrivacyKey", "", orNone(text(8, 64))}.hidden(),
      Setting{"TrapHost", "", orNone(host())},
      Setting{"SnmpContact", "", text(0, 120)},
      Setting{"SnmpLocation", "", text(0, 120)},
  };
}

Table network()
{
  return {
      Setting{"Dhcp", "true", trueOrFalse()}.restarts(),
      Setting{"IpAddress", "192.168.1.20", ipv4Address()}.member("IpAddressing", "ip.address"),
      Setting{"IpNetmask", "255.255.255.0", netmask()}.member("IpAddressing", "ip.netmask"),
      Setting{"IpGateway", "192.168.1.1", orNone(ipv4Address())}.member("IpAddressing", "ip.gateway"),
      Setting{"NameServer", "", orNone(ipv4Address())},
      Setting{"HostName", "desk-phone", host()},
      Setting{"VlanEnabled", "false", trueOrFalse()}.restarts(),
      Setting{"VlanId", "1", wholeNumber(1, 4094)}.restarts(),
      Setting{"VlanPriority", "5", wholeNumber(0, 7)},
      Setting{"PcPortEnabled", "true", trueOrFalse()},
      Setting{"TimeServer", "time.example.com", orNone(host())},
      Setting{"TimeZone", "UTC", timeZone()},
      Setting{"TimePollMinutes", "60", wholeNumber(1, 1440)},
      Setting{"DaylightSaving", "true", trueOrFalse()},
  };
}

// User data is reset and reloaded item by item, without a verdict on groups and, for rows, with the first
// row's value: so no member of a group and nothing with rows belongs here. Nor does a text that may be empty
// while its default is not, since an item that was never stored is reloaded as an empty text.
Table userPreferences()
{
  return {
      Setting{"Language", "en", oneOf({"en", "de", "fr", "es", "it"})},
      Setting{"Brightness", "80", wholeNumber(0, 100)},
      Setting{"Contrast", "50", wholeNumber(0, 100)},
      Setting{"DimSeconds", "60", wholeNumber(0, 3600)},
      Setting{"ClockStyle", "24h", oneOf({"12h", "24h"})},
      Setting{"DateOrder", "day-month-year", oneOf({"day-month-year", "month-day-year", "year-month-day"})},
      Setting{"Banner", "Ready", plainText(1, 40)},
      Setting{"RingTone", "classic", oneOf({"classic", "bell", "chime", "silent"})},
      Setting{"RingVolume", "6", wholeNumber(0, 10)},
      Setting{"KeyClick", "false", trueOrFalse()},
  };
}

Table lines()
{
  return {
      Setting{"LineEnabled", "true", trueOrFalse()}.inRows(lineCount),
      Setting{"LineLabel", "", text(0, 20)}.inRows(lineCount),
      Setting{"LineNumber", "", dialString()}.inRows(lineCount),
      Setting{"LineRingTone", "classic", oneOf({"classic", "bell", "chime", "silent"})}.inRows(lineCount),
      Setting{"LinePin", "", orNone(digits(4, 8))}.hidden().inRows(lineCount),
      Setting{"LineForwarding", "true", trueOrFalse()}.inRows(lineCount),
  };
}

Table deviceOnly()
{
  return {
      Setting{"FirmwareRelease", "4.2.0", text(1, 20)}.fact(),
      Setting{"PhoneLabel", "", text(0, 40)}.local(),
      Setting{"PhoneRoom", "", text(0, 40)}.local(),
      Setting{"AssetNumber", "", text(0, 20)}.local(),
      Setting{"KioskMode", "false", trueOrFalse()}.local(),
      Setting{"KeyFunction", "none", oneOf({"none", "line", "speed-dial", "busy-lamp"})}.local().inRows(keyCount),
      Setting{"KeyTarget", "", dialString()}.local().inRows(keyCount),
      Setting{"HandsetVolume", "5", wholeNumber(0, 10)}.local().inRows(handsetCount),
  };
}

} // namespace

Setting Setting::inRows(int count) const
{
  Setting changed = *this;
  changed.rows = count;
  return changed;
}

Setting Setting::restarts() const
{
  Setting changed = *this;
  changed.repeat = Repeat::refused;
  return changed;
}

Setting Setting::hidden() const
{
  Setting changed = *this;
  changed.secret = true;
  return changed;
}

Setting Setting::fact() const
{
  Setting changed = *this;
  changed.readOnly = true;
  return changed;
}

Setting Setting::local() const
{
  Setting changed = *this;
  changed.localOnly = true;
  return changed;
}

Setting Setting::member(const std::string& ofGroup, const std::string& itsRootId) const
{
  Setting changed = *this;
  changed.group = ofGroup;
  changed.rootId = itsRootId;
  return changed;
}

const std::vector<Setting>& settings()
{
  static const std::vector<Setting> all = []
  {
    std::vector<Setting> table;
    for (const Table& part : {transport(), sip(), permissions(), featureAccess(), snmp(), network(), userPreferences(),
                              lines(), deviceOnly()})
      table.insert(table.end(), part.begin(), part.end());
    return table;
  }();
  return all;
}

} // namespace commsservice
