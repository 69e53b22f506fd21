// Errors of the file system are told with their files and without the name of the function.
#include "ExceptionText.h"

#include <filesystem>

namespace cli
{

std::string exceptionText(const std::exception& error)
{
  const auto* failed = dynamic_cast<const std::filesystem::filesystem_error*>(&error);
  if (failed == nullptr)
    return error.what();
  std::string files = failed->path1().string();
  if (!failed->path2().empty())
    files += " and " + failed->path2().string();
  return (files.empty() ? "the file system" : files) + ": " + failed->code().message();
}

} // namespace cli
