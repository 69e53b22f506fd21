#include "WorkingFolder.h"

#include <cstdlib>

#include "Fuzz.h"

namespace fuzz
{

WorkingFolder::WorkingFolder() : before(std::filesystem::current_path())
{
  const bool memory = std::filesystem::is_directory("/dev/shm");
  std::string pattern = (memory ? "/dev/shm" : std::filesystem::temp_directory_path().string()) + "/sdm-fuzz-XXXXXX";
  require(mkdtemp(pattern.data()) != nullptr, "there is a folder to work in", pattern);
  path = pattern;
  std::filesystem::current_path(path);
}

WorkingFolder::~WorkingFolder()
{
  std::error_code ignored;
  std::filesystem::current_path(before, ignored);
  std::filesystem::remove_all(path, ignored);
}

} // namespace fuzz
