// The system makes a name that nobody has, in its folder for temporary files.
#include "ScratchFolder.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "Files.h"

namespace host
{
ScratchFolder::ScratchFolder()
{
  std::string name = (std::filesystem::temp_directory_path() / "sdm-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr)
    throwSystemError(name, "cannot be made", errno);
  folder = name;
}

ScratchFolder::~ScratchFolder()
{
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
}

const std::filesystem::path& ScratchFolder::path() const
{
  return folder;
}
} // namespace host
