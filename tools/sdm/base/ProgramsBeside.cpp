// The program is replaced and not called: signals, terminal and exit code are then the other one's without any help.
#include "ProgramsBeside.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <system_error>
#include <unistd.h>

#include "ChildProgram.h"
#include "StartError.h"
#include "Text.h"

namespace cli
{
namespace
{

constexpr const char* beginning = "sdm-";

bool isName(const std::string& name)
{
  return !name.empty() && name.front() != '-' &&
         name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-") == std::string::npos;
}

bool isProgram(const std::filesystem::path& file)
{
  std::error_code unknown;
  return std::filesystem::is_regular_file(file, unknown) && ::access(file.c_str(), X_OK) == 0;
}

} // namespace

std::filesystem::path ownFolder()
{
  std::error_code unknown;
  return std::filesystem::read_symlink("/proc/self/exe", unknown).parent_path();
}

std::vector<std::string> programsBeside()
{
  std::vector<std::string> names;
  const std::size_t skipped = std::strlen(beginning);
  std::error_code unreadable;
  for (std::filesystem::directory_iterator entry(ownFolder(), unreadable), end; !unreadable && entry != end;
       entry.increment(unreadable))
  {
    const std::string file = entry->path().filename().string();
    if (beginsWith(file, beginning) && isName(file.substr(skipped)) && isProgram(entry->path()))
      names.push_back(file.substr(skipped));
  }
  std::sort(names.begin(), names.end());
  return names;
}

void becomeProgramBeside(const std::string& name, const char* const* argv)
{
  const std::string program = (ownFolder() / (beginning + name)).string();
  std::vector<std::string> arguments = {program};
  for (const char* const* argument = argv + 2; *argument != nullptr; ++argument)
    arguments.emplace_back(*argument);
  ::execv(program.c_str(), argumentsOf(arguments).data());
  throw StartError("the program " + program + " cannot be run: " + std::strerror(errno));
}

} // namespace cli
