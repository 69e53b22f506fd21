#include "ScratchFolder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "StartError.h"

namespace cli
{

ScratchFolder::ScratchFolder(const std::string& purpose)
{
  std::string pattern = (std::filesystem::temp_directory_path() / ("sdm-" + purpose + "-XXXXXX")).string();
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
