// Asks the program git for the file.
#include "GitFile.h"

#include <filesystem>
#include <utility>
#include <vector>

#include "base/ChildProgram.h"
#include "base/WholeFile.h"
#include "map/MapFile.h"

namespace cli::diff
{
namespace
{

[[noreturn]] void unreadable(const std::string& revision, const std::string& path, const std::string& why)
{
  throw FileError("the item map " + path + " cannot be read from the commit " + revision + ": " + why);
}

ChildAnswer git(const std::filesystem::path& folder, const std::vector<std::string>& arguments)
{
  std::vector<std::string> command = {"git", "-C", folder.empty() ? "." : folder.string()};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return answerOf(command, largestFile);
}

std::string why(const ChildAnswer& answer, const char* otherwise)
{
  return answer.complaint.empty() ? otherwise : "git says: " + answer.complaint;
}

} // namespace

std::string contentAt(const std::string& revision, const std::string& path)
{
  // What begins with a hyphen would be an option of git's.
  if (revision.empty() || revision.front() == '-')
    unreadable(revision, path, "that is no name of a commit");
  const std::filesystem::path file(path);
  try
  {
    ChildAnswer commit = git(file.parent_path(), {"rev-parse", "--verify", revision + "^{commit}"});
    if (commit.code != 0)
      unreadable(revision, path, why(commit, "git knows no such commit"));
    const std::string id = commit.output.substr(0, commit.output.find('\n'));
    ChildAnswer content = git(file.parent_path(), {"cat-file", "blob", id + ":./" + file.filename().string()});
    if (content.code != 0)
      unreadable(revision, path, why(content, "git has no such file in it"));
    return std::move(content.output);
  }
  catch (const Unusable& error)
  {
    unreadable(revision, path, error.what());
  }
}

} // namespace cli::diff
