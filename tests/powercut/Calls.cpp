// Stands in for the C library's calls that change a disk, in a process that loads this library first.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>

#include "Cut.h"

#define POWERCUT_CALL extern "C" __attribute__((visibility("default")))

namespace powercut
{
namespace
{
std::mutex& turns()
{
  static std::mutex* const mutex = new std::mutex();
  return *mutex;
}

std::string pathOf(int file)
{
  std::array<char, PATH_MAX> text{};
  const std::string link = "/proc/self/fd/" + std::to_string(file);
  const ssize_t size = ::readlink(link.c_str(), text.data(), text.size());
  return {text.data(), size < 0 ? 0 : static_cast<std::size_t>(size)};
}

/// Without links in its folder; the file itself need not be there.
std::string resolved(const char* name)
{
  const std::string path = name;
  const std::size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  std::array<char, PATH_MAX> text{};
  if (::realpath(folder.c_str(), text.data()) == nullptr)
    return path;
  return std::string(text.data()) + "/" + (slash == std::string::npos ? path : path.substr(slash + 1));
}

int opened(int folder, const char* name, int flags, mode_t mode)
{
  const auto call = [&] { return ::syscall(SYS_openat, folder, name, flags, mode); };
  const bool relative = folder != AT_FDCWD && *name != '/';
  const bool writes = (flags & O_ACCMODE) != O_RDONLY || (flags & (O_CREAT | O_TRUNC)) != 0;
  if (!writes || relative || (flags & O_TMPFILE) == O_TMPFILE)
    return static_cast<int>(call());
  const std::lock_guard<std::mutex> turn(turns());
  const std::string path = resolved(name);
  if (!plan().watches(path))
    return static_cast<int>(call());
  const bool creates = (flags & O_CREAT) != 0 && ::access(path.c_str(), F_OK) != 0;
  return static_cast<int>(plan().carryOut(
      creates ? "create" : "open", path,
      [&] { plan().disk.willOpen(path, (flags & O_CREAT) != 0, (flags & O_TRUNC) != 0); }, call));
}

long written(int file, const char* bytes, std::size_t size, off_t offset, bool positioned)
{
  const auto write = [&](std::size_t count) {
    return positioned ? ::syscall(SYS_pwrite64, file, bytes, count, offset) : ::syscall(SYS_write, file, bytes, count);
  };
  const std::lock_guard<std::mutex> turn(turns());
  const std::string path = pathOf(file);
  if (!plan().watches(path))
    return write(size);
  off_t place = offset;
  if (!positioned)
    place = ::lseek(file, 0, (::fcntl(file, F_GETFL) & O_APPEND) != 0 ? SEEK_END : SEEK_CUR);
  return plan().carryOut(
      "write", path,
      [&] {
        plan().disk.willWrite(path, place, {bytes, size});
      },
      [&] { return write(size); }, [&] { return write(size / 2); });
}

int synced(long number, int file)
{
  const auto call = [&] { return ::syscall(number, file); };
  const std::lock_guard<std::mutex> turn(turns());
  const std::string path = pathOf(file);
  // Whoever syncs a folder does it for the entries in it, the watched folder's own entry among them.
  if (!plan().watches(path + "/"))
    return static_cast<int>(call());
  return static_cast<int>(plan().carryOut(
      "sync", path, [&] { plan().disk.didSync(path); }, call));
}

int truncated(int file, off_t size)
{
  const auto call = [&] { return ::syscall(SYS_ftruncate, file, size); };
  const std::lock_guard<std::mutex> turn(turns());
  const std::string path = pathOf(file);
  if (!plan().watches(path))
    return static_cast<int>(call());
  return static_cast<int>(plan().carryOut(
      "truncate", path, [&] { plan().disk.willTruncate(path, size); }, call));
}

/// A call on one name or two, of which the last one is that of the changed entry.
int renamed(const char* kind, const std::string& path, const std::function<void()>& note,
            const std::function<long()>& call)
{
  const std::lock_guard<std::mutex> turn(turns());
  return static_cast<int>(plan().watches(path) ? plan().carryOut(kind, path, note, call) : call());
}

mode_t modeArgument(int flags, va_list arguments)
{
  return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(arguments, mode_t) : 0;
}

int madeTemporary(char* name, int flags)
{
  char* const end = name + std::strlen(name) - 6;
  for (unsigned number = 0; number < 1000000; ++number)
  {
    std::array<char, 7> digits{};
    std::snprintf(digits.data(), digits.size(), "%06u", number);
    std::memcpy(end, digits.data(), 6);
    const int file = opened(AT_FDCWD, name, flags | O_RDWR | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
    if (file >= 0 || errno != EEXIST)
      return file;
  }
  return -1;
}
} // namespace
} // namespace powercut

using namespace powercut;

#define POWERCUT_OPEN(name)                                                                                            \
  POWERCUT_CALL int name(const char* path, int flags, ...)                                                             \
  {                                                                                                                    \
    va_list arguments;                                                                                                 \
    va_start(arguments, flags);                                                                                        \
    const mode_t mode = modeArgument(flags, arguments);                                                                \
    va_end(arguments);                                                                                                 \
    return opened(AT_FDCWD, path, flags, mode);                                                                        \
  }
POWERCUT_OPEN(open)
POWERCUT_OPEN(open64)

namespace
{
using OpenStream = FILE* (*)(const char*, const char*);

/// Streams are not counted, since what is written to them is nobody's promise; only their opening can fail.
FILE* openedStream(const char* name, const char* path, const char* mode)
{
  if (*mode != 'r' && plan().refusesStream(resolved(path)))
    return nullptr;
  // The loader hands out functions as pointers to nothing in particular.
  OpenStream real = nullptr;
  void* const found = ::dlsym(RTLD_NEXT, name);
  std::memcpy(&real, &found, sizeof real);
  return real(path, mode);
}
} // namespace

POWERCUT_CALL FILE* fopen(const char* path, const char* mode)
{
  return openedStream("fopen", path, mode);
}

POWERCUT_CALL FILE* fopen64(const char* path, const char* mode)
{
  return openedStream("fopen64", path, mode);
}

POWERCUT_CALL int mkostemp(char* name, int flags)
{
  return madeTemporary(name, flags);
}

POWERCUT_CALL int mkostemp64(char* name, int flags)
{
  return madeTemporary(name, flags);
}

POWERCUT_CALL ssize_t write(int file, const void* bytes, size_t size)
{
  return written(file, static_cast<const char*>(bytes), size, 0, false);
}

POWERCUT_CALL ssize_t pwrite(int file, const void* bytes, size_t size, off_t offset)
{
  return written(file, static_cast<const char*>(bytes), size, offset, true);
}

POWERCUT_CALL ssize_t pwrite64(int file, const void* bytes, size_t size, off_t offset)
{
  return written(file, static_cast<const char*>(bytes), size, offset, true);
}

POWERCUT_CALL ssize_t writev(int file, const iovec* pieces, int count)
{
  std::string all;
  for (int i = 0; i < count; ++i)
    all.append(static_cast<const char*>(pieces[i].iov_base), pieces[i].iov_len);
  return written(file, all.data(), all.size(), 0, false);
}

POWERCUT_CALL int fsync(int file)
{
  return synced(SYS_fsync, file);
}

POWERCUT_CALL int fdatasync(int file)
{
  return synced(SYS_fdatasync, file);
}

POWERCUT_CALL int ftruncate(int file, off_t size) noexcept
{
  return truncated(file, size);
}

POWERCUT_CALL int ftruncate64(int file, off_t size) noexcept
{
  return truncated(file, size);
}

POWERCUT_CALL int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept
{
  const std::string source = resolved(from);
  const std::string target = resolved(to);
  return renamed(
      "rename", target, [&] { plan().disk.willRename(source, target); },
      [&] { return ::syscall(SYS_renameat2, fromFolder, from, toFolder, to, 0); });
}

POWERCUT_CALL int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept
{
  const std::string source = resolved(from);
  const std::string target = resolved(to);
  return renamed(
      "rename", target, [&] { plan().disk.willRename(source, target); },
      [&] { return ::syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags); });
}

POWERCUT_CALL int rename(const char* from, const char* to) noexcept
{
  return renameat(AT_FDCWD, from, AT_FDCWD, to);
}

POWERCUT_CALL int link(const char* from, const char* to) noexcept
{
  const std::string source = resolved(from);
  const std::string target = resolved(to);
  return renamed(
      "link", target, [&] { plan().disk.willLink(source, target); },
      [&] { return ::syscall(SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0); });
}

POWERCUT_CALL int unlink(const char* name) noexcept
{
  const std::string path = resolved(name);
  return renamed(
      "unlink", path, [&] { plan().disk.willUnlink(path); },
      [&] { return ::syscall(SYS_unlinkat, AT_FDCWD, name, 0); });
}

POWERCUT_CALL int mkdir(const char* name, mode_t mode) noexcept
{
  const std::string path = resolved(name);
  return renamed(
      "mkdir", path, [&] { plan().disk.willMakeFolder(path); },
      [&] { return ::syscall(SYS_mkdirat, AT_FDCWD, name, mode); });
}
