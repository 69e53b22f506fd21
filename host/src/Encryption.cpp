// Values are sealed with the key of the process, each with a random nonce of its own; a text is both, in base 64.
#include "Encryption.h"

#include <sodium.h>

#include <array>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Everlasting.h"
#include "Key.h"
#include "Log.h"
#include "NotEncrypted.h"
#include "host/Error.h"
#include "host/KeyFile.h"

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

bool isUnopenedText(const std::string& text)
{
  KeyInUse& state = keyInUse();
  const std::lock_guard<std::mutex> lock(state.mutex);
  return !state.unopened.empty() && state.unopened.count(digestOf(text)) != 0;
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

/// What an encrypted text holds; nothing for any other text.
std::optional<std::vector<unsigned char>> sealedIn(const std::string& text)
{
  std::optional<std::vector<unsigned char>> sealed = fromBase64(text);
  return sealed && sealed->size() >= nonceSize + sealSize ? sealed : std::nullopt;
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

bool couldNotEncrypt(std::string& out, const std::string& why)
{
  // Who asked may not look at the result, so the log tells as well.
  SDM_HOST_LOG(2, "a value is not encrypted: %s", why.c_str());
  out = notEncrypted(why);
  return false;
}

bool couldNotDecrypt(const std::string& in)
{
  return sealedIn(in) ? couldNotOpen(in) : false;
}

bool encryptText(const std::string& in, std::string& out)
{
  const std::optional<Key> key = currentKey();
  if (!key)
    return couldNotEncrypt(out, whyThereIsNoKey());
  if (isUnopenedText(in))
    return couldNotEncrypt(out, "it is no value, but the encrypted text of one that could not be decrypted");
  std::vector<unsigned char> sealed(nonceSize + sealSize + in.size());
  randombytes_buf(sealed.data(), nonceSize);
  if (crypto_secretbox_easy(sealed.data() + nonceSize, bytesOf(in), in.size(), sealed.data(), key->bytes.data()) != 0)
    return couldNotEncrypt(out, "the encryption library refused it");
  out = base64(sealed);
  return true;
}

bool decryptText(const std::string& in, std::string& out)
{
  const std::optional<Key> key = currentKey();
  const std::optional<std::vector<unsigned char>> sealed = sealedIn(in);
  if (!sealed)
    return false;
  if (!key)
    return couldNotOpen(in);
  std::string plain(sealed->size() - nonceSize - sealSize, '\0');
  if (crypto_secretbox_open_easy(reinterpret_cast<unsigned char*>(plain.data()), sealed->data() + nonceSize,
                                 sealed->size() - nonceSize, sealed->data(), key->bytes.data()) != 0)
    return couldNotOpen(in);
  out = std::move(plain);
  return true;
}
} // namespace host
