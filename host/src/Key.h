// The file of the key under the encrypted values.
#pragma once

#include <sodium.h>

#include <array>
#include <filesystem>

namespace host
{
/// A key that does not stay in memory behind itself.
class Key
{
public:
  Key() = default;
  ~Key()
  {
    sodium_memzero(bytes.data(), bytes.size());
  }
  Key(const Key&) = default;
  Key& operator=(const Key&) = default;

  std::array<unsigned char, crypto_secretbox_KEYBYTES> bytes{};
};

/// The key in this file, which is made with a new random one, mode 0600, when it is not there. Throws `Error` naming
/// the file when it cannot be read or made, is no key, or is open to others.
Key readOrMakeKey(const std::filesystem::path& file);
} // namespace host
