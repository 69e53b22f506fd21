#include "NetworkValues.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <sstream>

namespace commsservice
{
namespace
{

bool isLetterOrDigit(char c)
{
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool isLabel(const std::string& label)
{
  if (label.empty() || label.size() > 63 || label.front() == '-' || label.back() == '-')
    return false;
  return std::all_of(label.begin(), label.end(), [](char c) { return isLetterOrDigit(c) || c == '-'; });
}

} // namespace

std::optional<std::uint32_t> parseIpv4(const std::string& text)
{
  in_addr address{};
  // A text with a NUL in it would pass for what stands before it.
  if (text.find('\0') != std::string::npos || inet_pton(AF_INET, text.c_str(), &address) != 1)
    return std::nullopt;
  return ntohl(address.s_addr);
}

std::string formatIpv4(std::uint32_t address)
{
  in_addr network{};
  network.s_addr = htonl(address);
  std::array<char, INET_ADDRSTRLEN> text{};
  inet_ntop(AF_INET, &network, text.data(), text.size());
  return text.data();
}

std::optional<int> prefixLength(std::uint32_t mask)
{
  const std::uint32_t zeros = ~mask;
  if ((zeros & (zeros + 1)) != 0)
    return std::nullopt;
  int length = 32;
  for (std::uint32_t rest = zeros; rest != 0; rest >>= 1)
    --length;
  return length;
}

bool isHostName(const std::string& text)
{
  if (text.empty() || text.size() > 253 || text.back() == '.')
    return false;
  if (text.find_first_not_of("0123456789.") == std::string::npos)
    return false;
  std::istringstream labels(text);
  for (std::string label; std::getline(labels, label, '.');)
  {
    if (!isLabel(label))
      return false;
  }
  return true;
}

} // namespace commsservice
