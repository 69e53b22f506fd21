#include "Disk.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <random>

namespace powercut
{
namespace
{
constexpr std::size_t sectorSize = 512;

// The system is called directly, since the C library's functions are the ones that are watched.
int openedFile(const std::string& path, int flags, mode_t mode)
{
  return static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path.c_str(), flags | O_CLOEXEC, mode));
}

std::string contentOf(const std::string& path)
{
  const int file = openedFile(path, O_RDONLY, 0);
  std::string content;
  char buffer[65536];
  for (ssize_t size = 0; file >= 0 && (size = ::read(file, buffer, sizeof buffer)) > 0;)
    content.append(buffer, static_cast<std::size_t>(size));
  if (file >= 0)
    ::syscall(SYS_close, file);
  return content;
}

void putContent(const std::string& path, std::string_view content, mode_t mode)
{
  const int file = openedFile(path, O_WRONLY | O_CREAT | O_TRUNC, mode);
  while (file >= 0 && !content.empty())
  {
    const ssize_t written = ::syscall(SYS_write, file, content.data(), content.size());
    if (written <= 0)
      break;
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  if (file >= 0)
    ::syscall(SYS_close, file);
}

mode_t modeOf(const std::string& path)
{
  struct stat status = {};
  return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 0777U : 0600;
}

bool exists(const std::string& path)
{
  struct stat status = {};
  return ::lstat(path.c_str(), &status) == 0;
}

void removeFile(const std::string& path)
{
  ::syscall(SYS_unlinkat, AT_FDCWD, path.c_str(), 0);
}
} // namespace

std::string folderOf(const std::string& path)
{
  return path.substr(0, path.rfind('/'));
}

Disk::File& Disk::fileAt(const std::string& path)
{
  const auto [place, isNew] = files.try_emplace(path);
  if (isNew)
    place->second.lasting = contentOf(path);
  return place->second;
}

void Disk::addEntry(const std::string& path, std::function<void()> undo)
{
  entries.push_back({folderOf(path), std::move(undo)});
}

void Disk::willOpen(const std::string& path, bool creates, bool truncates)
{
  if (creates && !exists(path))
  {
    files[path] = {};
    addEntry(path,
             [this, path]
             {
               files.erase(path);
               removeFile(path);
             });
  }
  else if (truncates)
    fileAt(path).changes.push_back({0, std::nullopt});
  else
    fileAt(path);
}

void Disk::willWrite(const std::string& path, off_t offset, std::string_view bytes)
{
  fileAt(path).changes.push_back({offset, std::string(bytes)});
}

void Disk::willTruncate(const std::string& path, off_t size)
{
  fileAt(path).changes.push_back({size, std::nullopt});
}

void Disk::willRename(const std::string& from, const std::string& to)
{
  const bool replaces = exists(to);
  const File replaced = replaces ? fileAt(to) : File();
  const mode_t mode = modeOf(to);
  files[to] = fileAt(from);
  files.erase(from);
  addEntry(to,
           [this, from, to, replaces, replaced, mode]
           {
             files[from] = files[to];
             files.erase(to);
             ::syscall(SYS_renameat2, AT_FDCWD, to.c_str(), AT_FDCWD, from.c_str(), 0);
             if (replaces)
               putContent(to, (files[to] = replaced).lasting, mode);
           });
}

void Disk::willLink(const std::string& from, const std::string& to)
{
  if (exists(to))
    return;
  files[to] = fileAt(from);
  addEntry(to,
           [this, to]
           {
             files.erase(to);
             removeFile(to);
           });
}

void Disk::willUnlink(const std::string& path)
{
  if (!exists(path))
    return;
  const File gone = fileAt(path);
  const mode_t mode = modeOf(path);
  files.erase(path);
  addEntry(path, [this, path, gone, mode] { putContent(path, (files[path] = gone).lasting, mode); });
}

void Disk::willMakeFolder(const std::string& path)
{
  if (exists(path))
    return;
  addEntry(path,
           [this, path]
           {
             const std::string within = path + "/";
             for (auto file = files.begin(); file != files.end();)
               file = file->first.rfind(within, 0) == 0 ? files.erase(file) : std::next(file);
             // What is in it goes with it, under a name that nobody looks for.
             const std::string lost = path + ".lost";
             ::syscall(SYS_renameat2, AT_FDCWD, path.c_str(), AT_FDCWD, lost.c_str(), 0);
           });
}

void Disk::didSync(const std::string& path)
{
  entries.erase(
      std::remove_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.folder == path; }),
      entries.end());
  const auto file = files.find(path);
  if (file == files.end())
    return;
  for (const Change& change : file->second.changes)
    apply(file->second.lasting, change);
  file->second.changes.clear();
}

void Disk::apply(std::string& content, const Change& change)
{
  const auto offset = static_cast<std::size_t>(change.offset);
  if (!change.bytes)
    return content.resize(offset);
  content.resize(std::max(content.size(), offset + change.bytes->size()));
  content.replace(offset, change.bytes->size(), *change.bytes);
}

void Disk::lose(Loss loss, std::uint64_t seed)
{
  if (loss == Loss::none)
    return;
  std::mt19937_64 random(seed);
  for (auto& [path, file] : files)
  {
    for (Change& change : file.changes)
    {
      if (loss == Loss::all || random() % 2 == 0)
        continue;
      if (change.bytes && change.bytes->size() > sectorSize && random() % 3 == 0)
        change.bytes->resize(sectorSize * (1 + random() % (change.bytes->size() / sectorSize)));
      apply(file.lasting, change);
    }
    if (!file.changes.empty() && exists(path))
      putContent(path, file.lasting, modeOf(path));
    file.changes.clear();
  }
  // The later ones are lost first: file systems keep the order of what happens to a folder.
  std::size_t lost = loss == Loss::all ? entries.size() : random() % (entries.size() + 1);
  for (auto entry = entries.rbegin(); lost > 0; ++entry, --lost)
    entry->undo();
}
} // namespace powercut
