// Digests of texts.
#pragma once

#include <string>

namespace cli
{

/// The SHA-256 of the bytes as 64 hexadecimal digits.
std::string sha256Of(const std::string& bytes);

} // namespace cli
