// What the host's files have in common: descriptors that close themselves, and errors that name the file.
#pragma once

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

/// Writes all of `text`, however many calls it takes. Throws `Error` naming the file.
void writeAll(int descriptor, std::string_view text, const std::filesystem::path& file);

/// Makes entries of the folder that holds `file` last. Throws `Error` naming the folder.
void syncFolderOf(const std::filesystem::path& file);
} // namespace host
