// SHA-256 by libsodium.
#include "Digest.h"

#include <array>
#include <sodium.h>

namespace cli
{

std::string sha256Of(const std::string& bytes)
{
  std::array<unsigned char, crypto_hash_sha256_BYTES> digest{};
  crypto_hash_sha256(digest.data(), reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
  std::array<char, 2 * crypto_hash_sha256_BYTES + 1> text{};
  sodium_bin2hex(text.data(), text.size(), digest.data(), digest.size());
  return text.data();
}

} // namespace cli
