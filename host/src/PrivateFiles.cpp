// Modes of files are set on descriptors, never by name: a name may be another file's by then.
#include "host/PrivateFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "Files.h"

namespace host
{
namespace
{
constexpr mode_t ownersFile = S_IRUSR | S_IWUSR;
constexpr mode_t others = S_IRWXG | S_IRWXO;
constexpr std::size_t namesToTell = 8;

/// A umask may have taken something from the owner as well.
int made(int descriptor)
{
  ::fchmod(descriptor, ownersFile);
  return descriptor;
}

int closedToOthers(int descriptor)
{
  struct stat status = {};
  if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && (status.st_mode & others) != 0)
    ::fchmod(descriptor, ownersFile);
  return descriptor;
}

bool isOneOf(const std::string& name, const std::vector<std::string>& names)
{
  return std::any_of(names.begin(), names.end(),
                     [&](const std::string& each)
                     {
                       return name.compare(0, each.size(), each) == 0 &&
                              (name.size() == each.size() || name[each.size()] == '.' || name[each.size()] == '-');
                     });
}

bool isOpenToOthers(const std::filesystem::path& file)
{
  struct stat status = {};
  return ::lstat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) && (status.st_mode & others) != 0;
}

/// 0, or why the file is still open to others.
int closeFile(const std::filesystem::path& file)
{
  // Without blocking: what was a regular file a moment ago may be a FIFO now.
  const FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status = {};
  if (!opened.isOpen() || ::fstat(opened.number(), &status) != 0)
    return errno;
  return S_ISREG(status.st_mode) && ::fchmod(opened.number(), ownersFile) != 0 ? errno : 0;
}

std::vector<std::string> namesIn(const std::filesystem::path& folder, const std::vector<std::string>& names)
{
  std::vector<std::string> found;
  std::error_code unreadable;
  for (std::filesystem::directory_iterator each(folder, unreadable), end; !unreadable && each != end;
       each.increment(unreadable))
    if (std::string name = each->path().filename().string(); isOneOf(name, names) && isOpenToOthers(each->path()))
      found.push_back(std::move(name));
  std::sort(found.begin(), found.end());
  return found;
}

std::string listed(const std::vector<std::string>& names)
{
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), namesToTell); ++i)
    text += (i == 0 ? "" : ", ") + names[i];
  if (names.size() > namesToTell)
    text += " and " + std::to_string(names.size() - namesToTell) + " more";
  return text;
}

std::string octal(mode_t mode)
{
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "%04o", static_cast<unsigned>(mode & 07777));
  return text.data();
}
} // namespace

int openPrivate(const std::filesystem::path& file, int flags)
{
  // Made by nobody else meanwhile, so that the mode that it is made with is the mode that it has.
  const int fresh = ::open(file.c_str(), flags | O_CREAT | O_EXCL | O_CLOEXEC, ownersFile);
  if (fresh >= 0)
    return made(fresh);
  if (errno != EEXIST)
    return -1;
  // A link to a file that is not there yet is followed as well.
  const int known = ::open(file.c_str(), (flags & ~O_EXCL) | O_CREAT | O_CLOEXEC, ownersFile);
  return known < 0 ? -1 : closedToOthers(known);
}

std::error_code makePrivateFolders(const std::filesystem::path& folder)
{
  std::filesystem::path path;
  for (const std::filesystem::path& part : folder)
  {
    path /= part;
    std::error_code unknown;
    if (std::filesystem::is_directory(path, unknown))
      continue;
    if (::mkdir(path.c_str(), S_IRWXU) != 0)
      return {errno == EEXIST ? ENOTDIR : errno, std::generic_category()};
    ::chmod(path.c_str(), S_IRWXU);
  }
  return {};
}

std::vector<std::string> closeToOthers(const std::filesystem::path& folder, const std::vector<std::string>& names)
{
  std::vector<std::string> closed;
  std::vector<std::string> sentences;
  for (const std::string& name : namesIn(folder, names))
  {
    if (const int reason = closeFile(folder / name); reason != 0)
      sentences.push_back((folder / name).string() + ": is open to others and cannot be closed to them: " +
                          std::generic_category().message(reason) + "; let its owner give it the mode 0600");
    else
      closed.push_back(name);
  }
  if (!closed.empty())
    sentences.insert(sentences.begin(), folder.string() +
                                            ": open to others until now, closed to them: " + listed(closed) +
                                            "; if others could reach the folder, change the passwords that it holds");
  return sentences;
}

std::string openFolder(const std::filesystem::path& folder)
{
  struct stat status = {};
  if (::stat(folder.c_str(), &status) != 0 || (status.st_mode & others) == 0)
    return "";
  const bool writable = (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
  return folder.string() + ": the folder is open to others, its mode is " + octal(status.st_mode) +
         (writable ? ", so they can put files of theirs in the place of its files"
                   : ", so they see what files it has") +
         "; give it the mode 0700";
}
} // namespace host
