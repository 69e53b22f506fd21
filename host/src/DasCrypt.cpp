#include "host/DasCrypt.h"

#include <fcntl.h>
#include <sodium.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <logAppUni.h>

#include "Everlasting.h"
#include "FaultLayer.h"
#include "Files.h"
#include "NotEncrypted.h"
#include "Trouble.h"

namespace host
{
namespace
{
constexpr std::size_t nonceSize = crypto_secretbox_NONCEBYTES;
constexpr std::size_t sealSize = crypto_secretbox_MACBYTES;
constexpr int textVariant = sodium_base64_VARIANT_ORIGINAL;

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

void requireSafeKeyFile(const struct stat& status, const std::filesystem::path& file)
{
  if (!S_ISREG(status.st_mode))
    throw Error(file.string() + ": is no regular file and so no key");
  if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0)
    throw Error(file.string() + ": the key is open to others than its owner; its mode must be 0600: chmod 600 it");
  if (status.st_size != crypto_secretbox_KEYBYTES)
    throw DamagedFile(file.string() + ": a key has " + std::to_string(crypto_secretbox_KEYBYTES) + " bytes, not " +
                      std::to_string(status.st_size));
}

/// Nothing when there is no such file.
std::optional<Key> readKey(const std::filesystem::path& file)
{
  const FileDescriptor input(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!input.isOpen() && errno == ENOENT)
    return std::nullopt;
  struct stat status = {};
  if (!input.isOpen() || ::fstat(input.number(), &status) != 0)
    throwSystemError(file, "the key cannot be read", errno);
  requireSafeKeyFile(status, file);
  Key key;
  errno = 0;
  if (::read(input.number(), key.bytes.data(), key.bytes.size()) != static_cast<ssize_t>(key.bytes.size()))
    throwSystemError(file, "the key cannot be read", errno);
  return key;
}

/// A file of its own beside `file`, removed at the end whatever happens.
class TemporaryFile
{
public:
  explicit TemporaryFile(const std::filesystem::path& file)
      : name(file.string() + ".XXXXXX"), descriptor(::mkostemp(name.data(), O_CLOEXEC))
  {
    if (!descriptor.isOpen())
      throwSystemError(file, "cannot be made", errno);
  }
  ~TemporaryFile()
  {
    ::unlink(name.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  std::string name;
  FileDescriptor descriptor;
};

/// Puts a whole key under the file's name, or leaves the one that another process has put there meanwhile.
void makeKey(const std::filesystem::path& file)
{
  Key key;
  crypto_secretbox_keygen(key.bytes.data());
  const TemporaryFile temporary(file);
  if (::fchmod(temporary.descriptor.number(), S_IRUSR | S_IWUSR) != 0)
    throwSystemError(file, "cannot be made", errno);
  writeAll(temporary.descriptor.number(), {reinterpret_cast<const char*>(key.bytes.data()), key.bytes.size()}, file);
  if (::fsync(temporary.descriptor.number()) != 0)
    throwSystemError(file, "cannot be made to last", errno);
  if (::link(temporary.name.c_str(), file.c_str()) != 0 && errno != EEXIST)
    throwSystemError(file, "cannot be made", errno);
  syncFolderOf(file);
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
    std::optional<Key> key = readKey(file);
    if (!key)
    {
      makeKey(file);
      key = readKey(file);
    }
    if (!key)
      throw Error(file.string() + ": went away while it was made");
    replaceKey(std::move(key));
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
