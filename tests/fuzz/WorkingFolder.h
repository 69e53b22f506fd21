// Where a fuzzer's files are.
#pragma once

#include <filesystem>

namespace fuzz
{

/// A folder in memory where there is one, removed at the end; meanwhile the process works in it.
class WorkingFolder
{
public:
  WorkingFolder();
  ~WorkingFolder();
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;

  std::filesystem::path path;

private:
  std::filesystem::path before;
};

} // namespace fuzz
