#include "GroupRules.h"

#include <cstdint>

#include "NetworkValues.h"

namespace commsservice
{
namespace
{

std::string judgeAddressing(const Proposal& proposed)
{
  const auto address = parseIpv4(proposed("IpAddress"));
  const auto mask = parseIpv4(proposed("IpNetmask"));
  const std::string gatewayText = proposed("IpGateway");
  const auto gateway = parseIpv4(gatewayText);
  if (!address || !mask)
    return "an address needs a netmask";

  const std::string network = formatIpv4(*address & *mask) + "/" + std::to_string(prefixLength(*mask).value_or(0));
  const std::uint32_t hostPart = *address & ~*mask;
  // Networks of two addresses or one have no address of the network itself and none for all hosts.
  if (~*mask > 1 && (hostPart == 0 || hostPart == ~*mask))
    return "the address " + formatIpv4(*address) + " is not that of a host in the network " + network;
  if (gatewayText.empty())
    return "";
  if (!gateway || (*gateway & *mask) != (*address & *mask))
    return "the gateway " + gatewayText + " is not in the network " + network + " of the address";
  return *gateway == *address ? "the gateway must not be the device itself" : "";
}

std::string judgePortRange(const Proposal& proposed)
{
  const std::string first = proposed("RtpFirstPort");
  const std::string last = proposed("RtpLastPort");
  if (std::stol(first) < std::stol(last))
    return "";
  return "the port range must end after its begin: " + first + " to " + last;
}

std::string judgeCredentials(const Proposal& proposed)
{
  const bool named = !proposed("SipUserName").empty();
  const bool secured = !proposed("SipPassword").empty();
  if (named == secured)
    return "";
  return named ? "a user name needs a password" : "a password needs a user name";
}

} // namespace

std::vector<GroupRule> groupRules()
{
  return {
      {"IpAddressing", judgeAddressing},
      {"RtpPorts", judgePortRange},
      {"SipCredentials", judgeCredentials},
  };
}

} // namespace commsservice
