// A file that is not the user's own, no regular one or too large counts as empty.
#include "PromptHistory.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <sstream>

#include "base/Descriptor.h"
#include "base/Shown.h"
#include "base/WholeFile.h"

namespace cli
{
namespace
{

constexpr std::size_t mostLines = 1000;
constexpr off_t mostBytes = off_t{1} << 20;
constexpr std::size_t longestLine = 4096;

std::filesystem::path stateFolder()
{
  // By the rules for that name, a relative one counts as none.
  const char* state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && *state == '/')
    return state;
  const char* home = std::getenv("HOME");
  return home != nullptr && *home == '/' ? std::filesystem::path(home) / ".local" / "state" : std::filesystem::path();
}

/// Without waiting for the other end of a pipe, and through no link.
Descriptor opened(const std::filesystem::path& file, int flags)
{
  return Descriptor(::open(file.c_str(), flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
}

bool isOwn(const Descriptor& file)
{
  struct stat status = {};
  return file.number >= 0 && ::fstat(file.number, &status) == 0 && S_ISREG(status.st_mode) &&
         status.st_uid == ::geteuid() && status.st_size <= mostBytes;
}

std::string contentOf(const std::filesystem::path& path)
{
  const Descriptor file = opened(path, O_RDONLY);
  if (!isOwn(file))
    return "";
  try
  {
    return wholeContent(file.number, static_cast<std::size_t>(mostBytes));
  }
  catch (const Unusable&)
  {
    return "";
  }
}

std::vector<std::string> linesOf(const std::filesystem::path& file)
{
  std::vector<std::string> lines;
  std::istringstream content(contentOf(file));
  for (std::string line; std::getline(content, line);)
  {
    // What could steer the terminal was not typed here.
    if (line.size() <= longestLine && isShowable(line))
      lines.push_back(line);
  }
  return lines;
}

} // namespace

PromptHistory::PromptHistory()
{
  const std::filesystem::path state = stateFolder();
  if (state.empty())
    return;
  std::error_code failure;
  std::filesystem::create_directories(state / "sdm", failure);
  if (failure)
    return;
  file = state / "sdm" / "history";
  shorten();
}

std::vector<std::string> PromptHistory::lines() const
{
  std::vector<std::string> all = file.empty() ? std::vector<std::string>() : linesOf(file);
  if (all.size() > mostLines)
    all.erase(all.begin(), all.end() - static_cast<std::ptrdiff_t>(mostLines));
  return all;
}

void PromptHistory::add(const std::string& line) const
{
  if (file.empty() || line.size() > longestLine || !isShowable(line))
    return;
  const Descriptor end = opened(file, O_WRONLY | O_APPEND | O_CREAT);
  if (isOwn(end) && ::fchmod(end.number, 0600) == 0)
    static_cast<void>(writeAll(end.number, line + "\n"));
}

void PromptHistory::shorten() const
{
  const std::vector<std::string> all = linesOf(file);
  if (all.size() <= 2 * mostLines)
    return;
  const std::filesystem::path beside = file.string() + "." + std::to_string(::getpid());
  std::string kept;
  std::for_each(all.end() - static_cast<std::ptrdiff_t>(mostLines), all.end(),
                [&](const std::string& line) { kept += line + "\n"; });
  const Descriptor copy = opened(beside, O_WRONLY | O_CREAT | O_EXCL);
  const bool whole = copy.number >= 0 && writeAll(copy.number, kept);
  std::error_code ignored;
  if (whole)
    std::filesystem::rename(beside, file, ignored);
  else if (copy.number >= 0)
    std::filesystem::remove(beside, ignored);
}

} // namespace cli
