// What the host's files have in common: descriptors that close themselves, and errors that name the file.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace host
{
/// Owns an open file.
class [[nodiscard]] FileDescriptor
{
public:
  /// Takes over `number`, negative for none.
  explicit FileDescriptor(int number);
  ~FileDescriptor();
  FileDescriptor(FileDescriptor&& other) noexcept;
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  FileDescriptor& operator=(FileDescriptor&&) = delete;

  int number() const;
  bool isOpen() const;
  /// Hands the file over to the caller.
  int release();

private:
  int fd;
};

/// Throws `Error` of the form "FILE: what: reason of `errorNumber`"; when the disk takes no changes it is
/// `DiskTrouble`, and says what to do.
[[noreturn]] void throwSystemError(const std::filesystem::path& file, const std::string& what, int errorNumber);

/// As `throwSystemError`, of a file that is only read: nobody is told to make it writable.
[[noreturn]] void throwUnreadable(const std::filesystem::path& file, const std::string& what, int errorNumber);

/// Opens a regular file without ever waiting for somebody at its other end; `flags` are those of `open`,
/// and with `O_CREAT` among them a file that is not there is made as `openPrivate` does. Not
/// open when the system refuses, with the reason in `errno`. Throws `Error` when something else than a regular file
/// stands there.
FileDescriptor openRegular(const std::filesystem::path& file, int flags);

/// The same for a file that is written, such as a log: a device in its place, such as a console, is taken.
FileDescriptor openRegularOrDevice(const std::filesystem::path& file, int flags);

/// For a file that others open: throws `Error` when something stands there that is neither a regular file nor a folder.
void requireRegular(const std::filesystem::path& file);

/// The first `most` bytes of a file and, when it has more, one byte behind them. Throws `Error` naming `file`.
std::string wholeContent(const FileDescriptor& descriptor, std::size_t most, const std::filesystem::path& file);

/// Writes all of `text`, however many calls it takes. Throws `Error` naming the file.
void writeAll(int descriptor, std::string_view text, const std::filesystem::path& file);

/// Makes entries of the folder that holds `file` last. Throws `Error` naming the folder.
void syncFolderOf(const std::filesystem::path& file);
} // namespace host
