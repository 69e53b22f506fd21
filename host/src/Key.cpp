// A new key is written beside its file and linked to its name, so that the file is whole or not there.
#include "Key.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>

#include "Files.h"
#include "Trouble.h"

namespace host
{
namespace
{
void requireSafeKeyFile(const struct stat& status, const std::filesystem::path& file)
{
  if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0)
    throw Error(file.string() + ": the key is open to others than its owner; its mode must be 0600: chmod 600 it");
  if (status.st_size != crypto_secretbox_KEYBYTES)
    throw DamagedFile(file.string() + ": a key has " + std::to_string(crypto_secretbox_KEYBYTES) + " bytes, not " +
                      std::to_string(status.st_size));
}

/// Nothing when there is no such file.
std::optional<Key> readKey(const std::filesystem::path& file)
{
  const FileDescriptor input = openRegular(file, O_RDONLY);
  if (!input.isOpen() && errno == ENOENT)
    return std::nullopt;
  struct stat status = {};
  if (!input.isOpen() || ::fstat(input.number(), &status) != 0)
    throwUnreadable(file, "the key cannot be read", errno);
  requireSafeKeyFile(status, file);
  Key key;
  std::string content = wholeContent(input, key.bytes.size(), file);
  const bool whole = content.size() == key.bytes.size();
  if (whole)
    std::copy(content.begin(), content.end(), key.bytes.begin());
  sodium_memzero(content.data(), content.size());
  if (!whole)
    throw DamagedFile(file.string() + ": the key changed while it was read");
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
} // namespace

Key readOrMakeKey(const std::filesystem::path& file)
{
  std::optional<Key> key = readKey(file);
  if (!key)
  {
    makeKey(file);
    key = readKey(file);
  }
  if (!key)
    throw Error(file.string() + ": went away while it was made");
  return *key;
}
} // namespace host
