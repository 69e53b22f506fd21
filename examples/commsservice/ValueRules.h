// What a setting's value may be, one small rule per kind of value.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace commsservice
{

/// Tells why a value cannot be taken, as the end of the sentence "the value ..."; empty when it can. The text
/// never quotes the value, which may be a secret.
using ValueRule = std::function<std::string(const std::string& value)>;

/// Any UTF-8 text that XML can carry, without control characters, of `shortest` to `longest` bytes.
ValueRule text(std::size_t shortest, std::size_t longest);

/// As `text`, without the characters that XML escapes. User data needs it: it is read back from the
/// database's reply in its escaped form, so such a character would be multiplied by every reload.
ValueRule plainText(std::size_t shortest, std::size_t longest);

/// Decimal digits without sign or leading zeros, so that equal numbers are equal texts.
ValueRule wholeNumber(long smallest, long largest);

/// "true" or "false".
ValueRule trueOrFalse();

/// "true" and nothing else: shown to the operator, but not for him to switch off.
ValueRule alwaysTrue(const std::string& because);

/// One of these words.
ValueRule oneOf(std::vector<std::string> words);

/// A dotted IPv4 address of a single host.
ValueRule ipv4Address();

/// A dotted mask of leading ones, from 128.0.0.0 to 255.255.255.255.
ValueRule netmask();

/// A host name or a dotted IPv4 address.
ValueRule host();

/// 1 to 65535.
ValueRule port();

/// "UTC" or a place in the form "Europe/Berlin".
ValueRule timeZone();

/// Digits, stars and hashes, with an optional leading plus; at most 32 characters, possibly none.
ValueRule dialString();

/// `shortest` to `longest` digits.
ValueRule digits(std::size_t shortest, std::size_t longest);

/// The rule, with the empty text allowed as "none".
ValueRule orNone(ValueRule rule);

} // namespace commsservice
