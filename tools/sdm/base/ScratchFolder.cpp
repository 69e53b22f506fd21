// Made by mkdtemp, removed with all that is in it.
#include "ScratchFolder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "StartError.h"

namespace cli
{

ScratchFolder::ScratchFolder(const std::string& purpose)
{
  std::error_code failure;
  const std::filesystem::path place = std::filesystem::temp_directory_path(failure);
  if (failure)
    throw StartError("there is no folder for temporary files: " + failure.message() + "; name one in TMPDIR");
  std::string pattern = (place / ("sdm-" + purpose + "-XXXXXX")).string();
  if (::mkdtemp(pattern.data()) == nullptr)
    throw StartError("no folder can be made to work in, " + pattern + ": " + std::strerror(errno) +
                     "; name another place in TMPDIR");
  folder = pattern;
}

ScratchFolder::~ScratchFolder()
{
  std::error_code kept;
  std::filesystem::remove_all(folder, kept);
}

} // namespace cli
