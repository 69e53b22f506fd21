// Network values as numbers and back, for rules that have to calculate with them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace commsservice
{

/// The number of an address in its usual form, four decimal numbers without leading zeros; nothing for any
/// other text.
std::optional<std::uint32_t> parseIpv4(const std::string& text);

/// The usual form of such a number.
std::string formatIpv4(std::uint32_t address);

/// The number of leading ones of a mask that has only leading ones.
std::optional<int> prefixLength(std::uint32_t mask);

/// Whether the text is a host name: labels of letters, digits and inner hyphens, at most 63 characters each
/// and 253 together. A text of digits and dots only is not one.
bool isHostName(const std::string& text);

} // namespace commsservice
