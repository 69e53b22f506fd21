#include "host/DasCrypt.h"

#include <sodium.h>

#include <array>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <logAppUni.h>

#include "Everlasting.h"
#include "FaultLayer.h"
#include "KeyFile.h"
#include "NotEncrypted.h"
#include "host/Error.h"

namespace host
{
namespace
{
constexpr std::size_t nonceSize = crypto_secretbox_NONCEBYTES;
constexpr std::size_t sealSize = crypto_secretbox_MACBYTES;
constexpr int textVariant = sodium_base64_VARIANT_ORIGINAL;

using Digest = std::array<unsigned char, crypto_generichash_BYTES_MIN>;

struct KeyInUse
{
  std::mutex mutex;
  std::optional<Key> key;
  /// Why there is none.
  std::string trouble;
  /// Of texts that could not be opened.
  std::set<Digest> unopened;
};

/// A database with more of them than that has other troubles.
constexpr std::size_t mostUnopened = 100000;

/// A device takes its key with it.
KeyInUse& keyInUse()
{
  static const Everlasting<KeyInUse> state;
  return *state;
}

std::optional<Key> currentKey()
{
  KeyInUse& state = keyInUse();
  const std::lock_guard<std::mutex> lock(state.mutex);
  return state.key;
}

void replaceKey(std::optional<Key> key, const std::string& whyNone = "")
{
  KeyInUse& state = keyInUse();
  const std::lock_guard<std::mutex> lock(state.mutex);
  state.key.reset();
  state.key = std::move(key);
  state.trouble = whyNone;
}

void noteTrouble(const std::string& why)
{
  KeyInUse& state = keyInUse();
  const std::lock_guard<std::mutex> lock(state.mutex);
  if (!state.key)
    state.trouble = why;
}

std::string whyThereIsNoKey()
{
  KeyInUse& state = keyInUse();
  const std::lock_guard<std::mutex> lock(state.mutex);
  return "there is no key" + (state.trouble.empty() ? "" : ": " + state.trouble);
}

Digest digestOf(const std::string& text)
{
  Digest digest{};
  crypto_generichash(digest.data(), digest.size(), reinterpret_cast<const unsigned char*>(text.data()), text.size(),
                     nullptr, 0);
  return digest;
}

/// Always false.
bool couldNotOpen(const std::string& text)
{
  KeyInUse& state = keyInUse();
  const std::lock_guard<std::mutex> lock(state.mutex);
  if (state.unopened.size() < mostUnopened)
    state.unopened.insert(digestOf(text));
  return false;
}

/// Whoever could not open a text goes on with the text itself, and may hand it in again as if it were the value.
bool isUnopenedText(const std::string& text)
{
  KeyInUse& state = keyInUse();
  const std::lock_guard<std::mutex> lock(state.mutex);
  return !state.unopened.empty() && state.unopened.count(digestOf(text)) != 0;
}

/// Always false. Who asked may not look at that, so the log tells as well.
bool couldNotEncrypt(std::string& out, const std::string& why)
{
  logAppUni("HostPlatform", "host/src/DasCrypt", 2, __LINE__, "a value is not encrypted: %s", why.c_str());
  out = notEncrypted(why);
  return false;
}

const unsigned char* bytesOf(const std::string& text)
{
  return reinterpret_cast<const unsigned char*>(text.data());
}

std::string base64(const std::vector<unsigned char>& bytes)
{
  std::string text(sodium_base64_encoded_len(bytes.size(), textVariant), '\0');
  sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(), textVariant);
  text.pop_back(); // the terminator
  return text;
}

std::optional<std::vector<unsigned char>> fromBase64(const std::string& text)
{
  if (text.empty())
    return std::nullopt;
  std::vector<unsigned char> bytes(text.size());
  std::size_t length = 0;
  if (sodium_base642bin(bytes.data(), bytes.size(), text.data(), text.size(), nullptr, &length, nullptr, textVariant) !=
      0)
    return std::nullopt;
  bytes.resize(length);
  return bytes;
}
} // namespace

void useKeyFile(const std::filesystem::path& file)
{
  if (sodium_init() < 0)
    throw Error("the encryption library cannot be started");
  try
  {
    replaceKey(readOrMakeKey(file));
  }
  catch (const Error& error)
  {
    noteTrouble(error.what());
    throw;
  }
}

void forgetKey()
{
  replaceKey(std::nullopt);
}
} // namespace host

bool DasCrypt::toEncryptedText(const std::string& in, std::string& out)
{
  const std::optional<host::Key> key = host::currentKey();
  if (host::encryptionFailsOnDemand())
    return host::couldNotEncrypt(out, "encryption fails on demand");
  if (!key)
    return host::couldNotEncrypt(out, host::whyThereIsNoKey());
  if (host::isUnopenedText(in))
    return host::couldNotEncrypt(out, "it is no value, but the encrypted text of one that could not be decrypted");
  std::vector<unsigned char> sealed(host::nonceSize + host::sealSize + in.size());
  randombytes_buf(sealed.data(), host::nonceSize);
  if (crypto_secretbox_easy(sealed.data() + host::nonceSize, host::bytesOf(in), in.size(), sealed.data(),
                            key->bytes.data()) != 0)
    return host::couldNotEncrypt(out, "the encryption library refused it");
  out = host::base64(sealed);
  return true;
}

bool DasCrypt::fromEncryptedText(const std::string& in, std::string& out)
{
  const bool fails = host::encryptionFailsOnDemand();
  const std::optional<host::Key> key = host::currentKey();
  const std::optional<std::vector<unsigned char>> sealed = host::fromBase64(in);
  if (!sealed || sealed->size() < host::nonceSize + host::sealSize)
    return false;
  if (fails || !key)
    return host::couldNotOpen(in);
  std::string plain(sealed->size() - host::nonceSize - host::sealSize, '\0');
  if (crypto_secretbox_open_easy(reinterpret_cast<unsigned char*>(plain.data()), sealed->data() + host::nonceSize,
                                 sealed->size() - host::nonceSize, sealed->data(), key->bytes.data()) != 0)
    return host::couldNotOpen(in);
  out = std::move(plain);
  return true;
}
